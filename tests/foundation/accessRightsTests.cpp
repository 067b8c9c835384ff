// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the computed access rights with the system's answers.
#include "platform/foundation/FileManager.hpp"
#include "tests/support/child.hpp"

#include <linux/fs.h>
#include <sys/ioctl.h>

using namespace platform;
using namespace tonewright::test;

namespace {

constexpr uid_t User = 12345;
constexpr gid_t OtherGroup = 12346;

// Walks `root` and compares the facts about every item with the answers for its path.
int compare(const std::string& root) {
    const FileManager& manager = FileManager::defaultManager();
    const auto enumerator = manager.enumeratorAtPath(root);
    if (!enumerator) {
        ADD_FAILURE() << root;
        return 0;
    }
    int items = 0;
    while (const auto subpath = enumerator->nextObject()) {
        const std::string path = root + "/" + std::string(*subpath);
        const FileFacts facts = enumerator->facts();
        bool isDirectory = false;
        EXPECT_EQ(facts.exists, manager.fileExistsAtPath(path, isDirectory)) << path;
        EXPECT_EQ(facts.isDirectory, isDirectory) << path;
        EXPECT_EQ(facts.isReadable, manager.isReadableFileAtPath(path)) << path;
        EXPECT_EQ(facts.isWritable, manager.isWritableFileAtPath(path)) << path;
        EXPECT_EQ(facts.isExecutable, manager.isExecutableFileAtPath(path)) << path;
        EXPECT_EQ(facts.isDeletable, manager.isDeletableFileAtPath(path)) << path;
        const auto attributes = manager.attributesOfItemAtPath(path);
        EXPECT_EQ(facts.error.has_value(), !attributes) << path;
        if (attributes) {
            EXPECT_EQ(facts.attributes, attributes.value()) << path;
        }
        ++items;
    }
    return items;
}

// Creates files, folders and links with every mode and several owners.
void makeEveryMode(const Scratch& scratch) {
    const bool isRoot = ::geteuid() == 0;
    int number = 0;
    for (const uid_t owner : {uid_t{0}, User}) {
        for (const gid_t group : {gid_t{0}, gid_t{User}, gid_t{OtherGroup}}) {
            for (unsigned mode = 0; mode <= 0777; mode += number % 2 == 0 ? 1 : 3) {
                const std::string name = "f" + std::to_string(number++);
                const std::string file = scratch.file("modes/" + name);
                ::chmod(file.c_str(), mode);
                if (isRoot && ::chown(file.c_str(), owner, group) != 0) FAIL();
                if (mode % 8 != 5) continue;
                const std::string folder = scratch.folder("folders/d" + std::to_string(number));
                (void)::symlink(("../modes/" + name).c_str(), (folder + "-link").c_str());
                scratch.file("folders/d" + std::to_string(number) + "/inside");
                ::chmod(folder.c_str(), mode | (mode & 8U) << 6U); // some have the sticky bit
                if (isRoot && ::chown(folder.c_str(), owner, group) != 0) FAIL();
            }
        }
    }
    (void)::symlink("nowhere", (scratch / "dangling").c_str());
    (void)::symlink("loop", (scratch / "loop").c_str());
    (void)::symlink("/dev/null", (scratch / "device").c_str());
    (void)::symlink("/proc/self/status", (scratch / "foreign").c_str());
    (void)::mkfifo((scratch / "fifo").c_str(), 0600);
    ::chmod(scratch.path().c_str(), 0755);
}

} // namespace

TEST(AccessRights, AreThoseOfTheSystemForEveryMode) {
    const Scratch scratch;
    makeEveryMode(scratch);
    EXPECT_GT(compare(scratch.path()), 1500);
    compare("/dev/pts");
    if (::geteuid() != 0) return;
    holdsInChildAs(User, User, {OtherGroup}, [&] { EXPECT_GT(compare(scratch.path()), 1500); });
}

TEST(AccessRights, AccessControlListsCount) {
    const Scratch scratch;
    ::chmod(scratch.path().c_str(), 0755);
    for (const unsigned mode : {0640U, 0600U, 0644U, 0755U, 0770U, 0707U}) {
        ::chmod(scratch.file("m" + std::to_string(mode)).c_str(), mode);
    }
    const std::string command = "setfacl -m u:12345:rwx '" + scratch.path() +
                                "'/m* 2>/dev/null && setfacl -m g:12346:- '" + scratch.path() + "'/m493 '" +
                                scratch.path() + "'/m420";
    if (::geteuid() != 0 || std::system(command.c_str()) != 0) GTEST_SKIP() << "no access control lists here";
    for (const uid_t user : {User, User + 7}) {
        holdsInChildAs(user, User, {OtherGroup}, [&] { EXPECT_EQ(compare(scratch.path()), 6); });
    }
}

TEST(AccessRights, MountsAndTheImmutableAttributeForbid) {
    const Scratch scratch;
    scratch.folder("mount");
    holdsInChild([&] {
        const std::string mount = scratch / "mount";
        mountInChild("none", mount, "tmpfs", 0);
        const std::string program = scratch.file("mount/program");
        ::chmod(program.c_str(), 0755);
        scratch.file("mount/folder/file");
        (void)::mkfifo((mount + "/fifo").c_str(), 0666);
        EXPECT_EQ(compare(scratch.path()), 5);
        EXPECT_EQ(::mount("none", mount.c_str(), nullptr, MS_REMOUNT | MS_RDONLY | MS_NOEXEC, nullptr), 0);
        EXPECT_EQ(compare(scratch.path()), 5);
        const auto enumerator = FileManager::defaultManager().enumeratorAtPath(mount);
        while (const auto subpath = enumerator->nextObject()) {
            const FileFacts facts = enumerator->facts();
            EXPECT_FALSE(facts.isDeletable);
            if (*subpath == "program") {
                EXPECT_FALSE(facts.isExecutable || facts.isWritable);
            }
        }
    });
}

TEST(AccessRights, AnImmutableFileIsNotWritable) {
    const Scratch scratch;
    const std::string file = scratch.file("stone");
    const int descriptor = ::open(file.c_str(), O_RDONLY);
    int flags = 0;
    const bool works = ::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0 &&
                       ::ioctl(descriptor, FS_IOC_SETFLAGS, &(flags |= FS_IMMUTABLE_FL)) == 0;
    EXPECT_EQ(compare(scratch.path()), 1);
    EXPECT_NE(FileManager::defaultManager().isWritableFileAtPath(file), works);
    ::ioctl(descriptor, FS_IOC_SETFLAGS, &(flags &= ~FS_IMMUTABLE_FL));
    ::close(descriptor);
    if (!works) GTEST_SKIP() << "no such attribute here";
}
