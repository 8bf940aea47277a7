#pragma once
// The start every screenshot program shares: the offscreen platform unless
// another one is asked for, and the output folder of the first argument.

#include <QByteArray>
#include <QDir>
#include <QString>

#include <cstdio>
#include <optional>

namespace screenshots
{

// Call before the QApplication is made.
inline void UseOffscreenUnlessTold()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

// The folder named by argv[1], made if missing; none, after printing the
// usage line with its further arguments, when it was not given.
inline std::optional<QDir> OutputFolder(int argc, char** argv, char const* moreArguments = "")
{
    if (argc < 2)
    {
        std::fprintf(stderr, "usage: %s OUTPUT_FOLDER%s\n", argv[0], moreArguments);
        return std::nullopt;
    }
    QDir const out(QString::fromLocal8Bit(argv[1]));
    QDir().mkpath(out.absolutePath());
    return out;
}

} // namespace screenshots
