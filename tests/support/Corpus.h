#pragma once
// The shared corpus of real-world files, beside the repository in a full
// checkout. A user's own clone has none: its tests are then skipped with the
// reason, listed by ctest as "Skipped" and named by make test at the end.
// ZEPH_CORPUS_DIR in the environment points elsewhere (or nowhere).

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zephtest
{

inline std::filesystem::path CorpusDir()
{
    char const* const chosen = std::getenv("ZEPH_CORPUS_DIR");
    return chosen ? std::filesystem::path(chosen) : std::filesystem::path(ZEPH_CORPUS_DIR);
}

inline std::string CorpusFile(std::string const& name)
{
    return (CorpusDir() / name).string();
}

inline bool CorpusPresent()
{
    return std::filesystem::exists(CorpusDir() / "MANIFEST.md");
}

} // namespace zephtest

// Skips the running test, saying why, when the corpus is absent. The test's
// suite name ends in "CorpusTest" so that make test can list what did not run.
#define ZEPH_REQUIRE_CORPUS()                                                                      \
    do                                                                                             \
    {                                                                                              \
        if (!zephtest::CorpusPresent())                                                            \
            GTEST_SKIP() << "no shared corpus of real-world files at " << zephtest::CorpusDir()    \
                         << " (set ZEPH_CORPUS_DIR to its folder)";                                \
    } while (false)
