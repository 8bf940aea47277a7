#pragma once
// Conversions between the platform string types and QString, for platform
// libraries only (the metadata library never sees Qt).

#include "zephcore/Strings.h"

#include <QString>

namespace zephcore
{

inline QString ToQString(UTF16String const& text)
{
    return QString(reinterpret_cast<QChar const*>(text.data()), qsizetype(text.size()));
}

inline QString ToQString(UTF8String const& text)
{
    return QString::fromUtf8(reinterpret_cast<char const*>(text.data()), qsizetype(text.size()));
}

inline UTF16String ToUTF16(QString const& text)
{
    return UTF16String(reinterpret_cast<unsigned short const*>(text.utf16()),
                       std::size_t(text.size()));
}

inline UTF8String ToUTF8(QString const& text)
{
    QByteArray const bytes = text.toUtf8();
    return UTF8String(reinterpret_cast<unsigned char const*>(bytes.constData()),
                      std::size_t(bytes.size()));
}

} // namespace zephcore
