#include "Cage.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Debian's header knows no more than its kernel, and the one that runs may know less.
#ifndef LANDLOCK_ACCESS_FS_REFER
#define LANDLOCK_ACCESS_FS_REFER (1ULL << 13)
#endif
#ifndef LANDLOCK_ACCESS_FS_TRUNCATE
#define LANDLOCK_ACCESS_FS_TRUNCATE (1ULL << 14)
#endif

constexpr long kRenamesBetweenFolders = 2, kTruncates = 3;  // the versions that know these rights

constexpr __u64 kWriting = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                           LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR |
                           LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                           LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM | LANDLOCK_ACCESS_FS_REFER;

long version() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

bool allow(int rules, const char* folder, __u64 rights) {
    landlock_path_beneath_attr below{};
    below.allowed_access = rights;
    below.parent_fd = open(folder, O_PATH | O_CLOEXEC);
    if (below.parent_fd < 0) return false;
    const bool done = syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &below, 0) == 0;
    close(below.parent_fd);
    return done;
}

}  // namespace

bool canKeepToAFolder() {
    return version() >= kRenamesBetweenFolders;
}

bool mayWriteOnlyIn(const std::string& folder) {
    landlock_ruleset_attr handled{};
    handled.handled_access_fs = kWriting;
    if (version() >= kTruncates) handled.handled_access_fs |= LANDLOCK_ACCESS_FS_TRUNCATE;
    const int rules = static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
    return rules >= 0 && allow(rules, folder.c_str(), handled.handled_access_fs) &&
           allow(rules, "/dev", handled.handled_access_fs) && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           syscall(SYS_landlock_restrict_self, rules, 0) == 0 && close(rules) == 0;
}
