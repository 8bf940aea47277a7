// Saves under faults: a full disk, read-only files, links, a kill during the
// save, another program's change between read and save. Each runs on real
// files through the real model; none needs the superuser, and each also
// holds for it.

#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/FileProvider.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <zephcore/Files.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace zephmetadata;
using namespace modeltest;
namespace fs = std::filesystem;

namespace
{

// The three ways a save goes: into the file, a sidecar given directly, and
// the sidecar of a format that cannot hold XMP.
enum class Branch
{
    kJpeg,
    kSidecar,
    kWebPSidecar
};

struct Made
{
    std::string path;   // what the provider opens
    std::string holder; // the file that holds the metadata, labelled "Before"
};

Made MakeFile(TempFolder const& folder, Branch branch, std::string const& stem = "clip")
{
    std::string const jpeg = folder.File(stem + ".jpg"), webp = folder.File(stem + ".webp");
    switch (branch)
    {
    case Branch::kJpeg:
    {
        WriteFile(jpeg, ReadFile(DataFile("tiny.jpg")));
        xmp::MetaPtr meta = Parse(LabelPacket("Before"));
        EXPECT_EQ(SaveMetadataToFile(meta.get(), U16(jpeg)), kMetadataSavedIntoFile);
        return {jpeg, jpeg};
    }
    case Branch::kSidecar:
        WriteFile(folder.File(stem + ".xmp"), LabelPacket("Before"));
        return {folder.File(stem + ".xmp"), folder.File(stem + ".xmp")};
    case Branch::kWebPSidecar:
        WriteFile(webp, kWebP);
        WriteFile(webp + ".xmp", LabelPacket("Before"));
        return {webp, webp + ".xmp"};
    }
    return {};
}

std::vector<Branch> const kAllBranches = {Branch::kJpeg, Branch::kSidecar, Branch::kWebPSidecar};

// Runs the check once for each branch, in a fresh folder, with errors cleared.
void ForEach(std::vector<Branch> const& branches,
             std::function<void(TempFolder const&, Made const&, Branch)> const& check,
             std::string const& stem = "clip")
{
    for (Branch branch : branches)
    {
        SCOPED_TRACE(int(branch));
        ClearErrors();
        TempFolder folder;
        check(folder, MakeFile(folder, branch, stem), branch);
    }
}

// Runs work in a child process whose files may not grow past limit bytes,
// as on a full disk. With failSoftly the write fails (EFBIG); otherwise the
// child is killed mid-write. The child's exit code is 0 if work succeeded.
int RunWithFileSizeLimit(rlim_t limit, bool failSoftly, std::function<bool()> const& work)
{
    pid_t const child = ::fork();
    if (child == 0)
    {
        std::signal(SIGXFSZ, failSoftly ? SIG_IGN : SIG_DFL);
        rlimit none = {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        rlimit size = {limit, limit};
        ::setrlimit(RLIMIT_FSIZE, &size);
        ::_exit(work() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

class SaveFaultsTest : public testing::Test
{
protected:
    void TearDown() override { ClearErrors(); }
};

} // namespace

TEST_F(SaveFaultsTest, FullDiskLeavesEveryFileWholeAndReportsFailure)
{
    std::string const big(8000, 'x');
    ForEach(kAllBranches,
            [&](TempFolder const& folder, Made const& made, Branch branch)
            {
                std::string const before = ReadFile(made.holder);
                auto provider = Open(made.path, big.c_str());
                int const status =
                    RunWithFileSizeLimit(before.size() + 100, true,
                                         [&] { return provider->Save() != kMetadataSaveFailed; });
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
                EXPECT_EQ(ReadFile(made.holder), before);
                EXPECT_EQ(folder.Names().size(), branch == Branch::kWebPSidecar ? 2u : 1u);
            });
    // The settings, custom schema and panel files go through the same writer.
    TempFolder folder;
    std::string const path = folder.File("settings.xml");
    WriteFile(path, "old content");
    int const status = RunWithFileSizeLimit(
        1024, true, [&] { return zephcore::FileUtils::SimpleWriteStringToFile(U16(path), big); });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"settings.xml"});
    EXPECT_EQ(ReadFile(path), "old content");
}

TEST_F(SaveFaultsTest, ReadOnlyFileIsRefusedOnEveryBranchEvenForTheSuperuser)
{
    ForEach(kAllBranches,
            [](TempFolder const&, Made const& made, Branch)
            {
                auto provider = Open(made.path, "Refused");
                std::string const before = ReadFile(made.holder);
                fs::permissions(made.holder, fs::perms::owner_read | fs::perms::group_read |
                                                 fs::perms::others_read);
                EXPECT_EQ(provider->Save(), kMetadataSaveFailed);
                EXPECT_TRUE(HasErrors());
                EXPECT_FALSE(zephcore::FileUtils::SimpleWriteStringToFile(U16(made.holder), "x"));
                EXPECT_EQ(ReadFile(made.holder), before);
            });
}

TEST_F(SaveFaultsTest, SaveKeepsModeOwnerGroupAndExtendedAttributes)
{
    bool const super = ::geteuid() == 0;
    uid_t const owner = super ? 12345 : ::geteuid();
    gid_t const group = super ? 23456 : ::getegid();
    ForEach(kAllBranches,
            [&](TempFolder const&, Made const& made, Branch)
            {
                ASSERT_EQ(::chmod(made.holder.c_str(), 0600), 0);
                ASSERT_EQ(::chown(made.holder.c_str(), owner, group), 0);
                if (::setxattr(made.holder.c_str(), "user.zeph.note", "kept", 4, 0) != 0)
                    GTEST_SKIP() << "no user extended attributes on this file system";
                EXPECT_NE(Open(made.path, "Private")->Save(), kMetadataSaveFailed);
                struct stat info = {};
                ASSERT_EQ(::stat(made.holder.c_str(), &info), 0);
                EXPECT_EQ(info.st_mode & 07777, 0600u);
                EXPECT_EQ(info.st_uid, owner);
                EXPECT_EQ(info.st_gid, group);
                char value[16] = {};
                EXPECT_EQ(::getxattr(made.holder.c_str(), "user.zeph.note", value, sizeof value),
                          4);
                EXPECT_EQ(LabelOf(made.path), "Private");
            });
}

TEST_F(SaveFaultsTest, SavingThroughASymbolicLinkSavesItsTargetAndKeepsTheLink)
{
    ForEach(
        {Branch::kJpeg, Branch::kSidecar},
        [](TempFolder const& folder, Made const& made, Branch)
        {
            std::string const link =
                folder.File(fs::path(made.path).filename().string().replace(0, 4, "link"));
            fs::create_symlink(fs::path(made.path).filename(), link);
            EXPECT_NE(Open(link, "Through")->Save(), kMetadataSaveFailed);
            EXPECT_TRUE(fs::is_symlink(link));
            EXPECT_EQ(LabelOf(made.path), "Through");
            EXPECT_EQ(folder.Names().size(), 2u);
        },
        "real");
}

TEST_F(SaveFaultsTest, HardLinkedFileIsRefusedWithAReasonAndBothNamesAgree)
{
    ForEach({Branch::kJpeg, Branch::kSidecar},
            [](TempFolder const& folder, Made const& made, Branch)
            {
                std::string const other =
                    folder.File("other" + fs::path(made.path).extension().string());
                fs::create_hard_link(made.path, other);
                EXPECT_EQ(Open(made.path, "Split?")->Save(), kMetadataSaveFailed);
                ASSERT_TRUE(HasErrors());
                std::string const message = S(zephcore::UTF16to8(GetErrorInfos().back().message));
                EXPECT_NE(message.find("hard links"), std::string::npos) << message;
                EXPECT_EQ(fs::hard_link_count(made.path), 2u);
                EXPECT_EQ(LabelOf(made.path) + LabelOf(other), "BeforeBefore");
            });
}

TEST_F(SaveFaultsTest, ChangeByAnotherProgramIsNeverOverwrittenSilently)
{
    // Written in place, keeping the file's identity, as an editor might.
    auto overwrite = [](std::string const& path, std::string const& bytes, bool keepTime)
    {
        struct stat before = {};
        ::stat(path.c_str(), &before);
        int const fd = ::open(path.c_str(), O_WRONLY | O_TRUNC);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(::write(fd, bytes.data(), bytes.size()), ssize_t(bytes.size()));
        timespec const times[2] = {before.st_atim, before.st_mtim};
        if (keepTime)
            ::futimens(fd, times);
        ::close(fd);
    };
    struct Change
    {
        char const* what;
        Branch branch;
        std::function<void(std::string const&)> make;
    } const changes[] = {
        {"size", Branch::kSidecar,
         [&](std::string const& p) { overwrite(p, LabelPacket("Theirs, longer"), false); }},
        {"time", Branch::kSidecar,
         [](std::string const& p)
         {
             timespec const times[2] = {{0, UTIME_OMIT}, {1000000000, 0}};
             ::utimensat(AT_FDCWD, p.c_str(), times, 0);
         }},
        {"XMP only", Branch::kSidecar,
         [&](std::string const& p) { overwrite(p, LabelPacket("Theirs"), true); }},
        {"truncated", Branch::kJpeg, [](std::string const& p) { fs::resize_file(p, 0); }},
    };
    for (Change const& change : changes)
    {
        SCOPED_TRACE(change.what);
        TempFolder folder;
        Made const made = MakeFile(folder, change.branch);
        auto provider = Open(made.path, "Mine");
        change.make(made.holder);
        std::string const theirs = ReadFile(made.holder);

        EXPECT_TRUE(provider->ChangedSinceRead());
        EXPECT_EQ(provider->Save(), kMetadataSaveConflict);
        EXPECT_EQ(ReadFile(made.holder), theirs);
        if (change.branch == Branch::kJpeg)
        {
            // Overwriting an emptied file is still refused, with no sidecar.
            EXPECT_EQ(provider->SaveOverwritingChanges(), kMetadataSaveFailed);
            EXPECT_EQ(folder.Names().size(), 1u);
            continue;
        }
        // The host decides: overwrite, or reload and save again.
        EXPECT_EQ(provider->SaveOverwritingChanges(), kMetadataSavedIntoSidecar);
        EXPECT_EQ(LabelOf(made.path), "Mine");
        EXPECT_FALSE(provider->ChangedSinceRead());
        change.make(made.holder);
        provider->Reload();
        SetLabel(provider, "Again");
        EXPECT_EQ(provider->Save(), kMetadataSavedIntoSidecar);
        EXPECT_EQ(LabelOf(made.path), "Again");
        EXPECT_EQ(folder.Names().size(), 1u);
    }
}

TEST_F(SaveFaultsTest, CopiesOfAKilledSaveAreRemovedByTheNextOpen)
{
    TempFolder folder;
    Made const made = MakeFile(folder, Branch::kJpeg, "a");
    std::string const before = ReadFile(made.path);
    auto provider = Open(made.path, "Killed");
    // Killed by the size limit half-way through copying the file.
    int const status = RunWithFileSizeLimit(
        before.size() / 2, false, [&] { return provider->Save() != kMetadataSaveFailed; });
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ);
    EXPECT_EQ(ReadFile(made.path), before);
    std::vector<std::string> const left = folder.Names();
    ASSERT_EQ(left.size(), 2u);
    std::string const stale = folder.File(left[0] == "a.jpg" ? left[1] : left[0]);

    // Left by an earlier version's saves; and names that are not ours.
    WriteFile(folder.File(".a.jpg.zeph-save-123456.jpg"), "stale");
    std::vector<std::string> expected = {".a.jpg.zeph-save-12x.jpg", ".zeph-notes.jpg",
                                         "a.jpg.bak"};
    for (std::string const& name : expected)
        WriteFile(folder.File(name), "keep");
    expected.push_back("a.jpg");
    std::sort(expected.begin(), expected.end());

    // A copy that a running save holds stays.
    int const held = ::open(stale.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    EXPECT_EQ(LabelOf(made.path), "Before");
    EXPECT_TRUE(fs::exists(stale));
    ::close(held);

    EXPECT_EQ(LabelOf(made.path), "Before");
    EXPECT_EQ(folder.Names(), expected);
    EXPECT_EQ(provider->Save(), kMetadataSavedIntoFile);
    EXPECT_EQ(folder.Names(), expected);
}

TEST_F(SaveFaultsTest, ACopyLeftInAFolderKnownToBeCleanIsStillRemovedByTheNextOpen)
{
    TempFolder folder;
    Made const made = MakeFile(folder, Branch::kJpeg, "a");
    // A folder untouched for a while is listed once, then taken as clean
    // until it changes.
    timespec const past[2] = {{std::time(nullptr) - 60, 0}, {std::time(nullptr) - 60, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, folder.path.c_str(), past, 0), 0);
    EXPECT_EQ(LabelOf(made.path), "Before");
    EXPECT_EQ(LabelOf(made.path), "Before");

    WriteFile(folder.File(".a.jpg.zeph-save-123456.jpg"), "stale");
    EXPECT_EQ(LabelOf(made.path), "Before");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"a.jpg"});
}

TEST_F(SaveFaultsTest, FileWhoseNameIs250BytesLongIsSaved)
{
    ForEach(
        {Branch::kJpeg, Branch::kSidecar},
        [](TempFolder const& folder, Made const& made, Branch)
        {
            ASSERT_EQ(fs::path(made.path).filename().string().size(), 250u);
            EXPECT_NE(Open(made.path, "Long")->Save(), kMetadataSaveFailed);
            EXPECT_EQ(LabelOf(made.path), "Long");
            EXPECT_EQ(folder.Names().size(), 1u);
        },
        std::string(246, 'n'));
}
