#include "engine/export/TargetFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>

namespace qm {

namespace {

constexpr int kAttempts = 100;

Error systemError(int code) {
    const bool absent = code == ENOENT || code == ENOTDIR;
    return {absent ? ErrorCategory::NotFound : ErrorCategory::Unreadable, std::strerror(code)};
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string temporaryIn(const std::string& folder) {
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string name = folder + ".quillmere-export-";
    for (int i = 0; i < 10; ++i) name += kLetters[random() % (sizeof kLetters - 1)];
    return name;
}

// Syncs the folder, so that the new name survives a crash. Some file systems cannot; the file itself is synced anyway.
void synchroniseFolder(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace

Result<std::unique_ptr<TargetFile>> TargetFile::create(const std::string& target) {
    struct stat former {};
    const bool replaces = ::stat(target.c_str(), &former) == 0;
    if (replaces && !S_ISREG(former.st_mode)) return Error{ErrorCategory::Unreadable, "not a regular file"};
    if (replaces && ::access(target.c_str(), W_OK) != 0) return systemError(errno);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::string temporary = temporaryIn(folderOf(target));
        const int descriptor = ::open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) {
            if (replaces) [[maybe_unused]]
                const int ignored = ::fchmod(descriptor, former.st_mode & 0777);
            return std::unique_ptr<TargetFile>(new TargetFile(target, temporary, descriptor));
        }
        if (errno != EEXIST) return systemError(errno);
    }
    return systemError(EEXIST);
}

TargetFile::TargetFile(std::string target, std::string temporary, int descriptor)
    : m_target(std::move(target)), m_temporary(std::move(temporary)), m_descriptor(descriptor) {}

TargetFile::~TargetFile() {
    abandon();
    ::close(m_descriptor);
}

std::optional<Error> TargetFile::commit() {
    if (::fsync(m_descriptor) != 0) return systemError(errno);
    {
        const std::lock_guard lock(m_mutex);
        if (m_state != State::Open) return Error{ErrorCategory::Unreadable, "cancelled"};
        if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0) return systemError(errno);
        m_state = State::Committed;
    }
    synchroniseFolder(folderOf(m_target));
    return std::nullopt;
}

bool TargetFile::abandon() {
    const std::lock_guard lock(m_mutex);
    if (m_state == State::Committed) return false;
    if (m_state == State::Open) ::unlink(m_temporary.c_str());
    m_state = State::Abandoned;
    return true;
}

}  // namespace qm
