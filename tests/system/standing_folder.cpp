// A folder that stands still when a test wants it to: shows the files of SOURCE, which lies flat, in MOUNTPOINT, read
// only, until it is asked to end. After SIGUSR1 it takes what is asked of it and answers nothing any more. It speaks
// the kernel's protocol itself. Prints "mounted"; status 77 where nothing can be mounted.
//
// Called as: standing_folder SOURCE MOUNTPOINT
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kLargestRequest = 1 << 20;
constexpr std::uint64_t kRoot = 1;  // files follow in the order in which they were asked for
constexpr int kCannotMount = 77;

volatile std::sig_atomic_t g_standsStill = 0;
volatile std::sig_atomic_t g_ends = 0;

class Folder {
public:
    Folder(std::string source, int device) : m_source(std::move(source)), m_device(device) {}

    void serve() {
        std::vector<char> request(kLargestRequest);
        while (!g_ends) {
            const ssize_t size = ::read(m_device, request.data(), request.size());
            if (size < 0 && errno != EINTR && errno != ENOENT) return;
            if (size < static_cast<ssize_t>(sizeof(fuse_in_header)) || g_standsStill) continue;
            const auto& header = *reinterpret_cast<const fuse_in_header*>(request.data());
            answer(header, request.data() + sizeof header);
        }
    }

private:
    void answer(const fuse_in_header& header, const char* argument) {
        switch (header.opcode) {
            case FUSE_INIT:
                return begin(header, *reinterpret_cast<const fuse_init_in*>(argument));
            case FUSE_LOOKUP:
                return lookUp(header, argument);
            case FUSE_GETATTR:
                return attributes(header);
            case FUSE_OPEN:
            case FUSE_OPENDIR: {
                fuse_open_out opened{};
                opened.open_flags = FOPEN_DIRECT_IO;  // every read comes here
                return reply(header, 0, &opened, sizeof opened);
            }
            case FUSE_READ:
                return read(header, *reinterpret_cast<const fuse_read_in*>(argument));
            case FUSE_READDIR:
            case FUSE_RELEASE:
            case FUSE_RELEASEDIR:
            case FUSE_FLUSH:
                return reply(header, 0, nullptr, 0);
            case FUSE_FORGET:
            case FUSE_BATCH_FORGET:
            case FUSE_INTERRUPT:
                return;
            default:
                return reply(header, ENOSYS, nullptr, 0);
        }
    }

    void reply(const fuse_in_header& header, int error, const void* data, std::size_t size) {
        const fuse_out_header out{static_cast<std::uint32_t>(sizeof out + size), -error, header.unique};
        std::string bytes(reinterpret_cast<const char*>(&out), sizeof out);
        bytes.append(static_cast<const char*>(data), size);
        [[maybe_unused]] const ssize_t written = ::write(m_device, bytes.data(), bytes.size());
    }

    void begin(const fuse_in_header& header, const fuse_init_in& kernel) {
        fuse_init_out out{};
        out.major = FUSE_KERNEL_VERSION;
        out.minor = std::min<std::uint32_t>(kernel.minor, FUSE_KERNEL_MINOR_VERSION);
        out.max_readahead = kernel.max_readahead;
        out.max_write = 1 << 16;
        reply(header, 0, &out, sizeof out);
    }

    std::string pathOf(std::uint64_t node) const {
        return node == kRoot ? m_source : m_source + '/' + m_names.at(node - kRoot - 1);
    }

    bool look(std::uint64_t node, fuse_attr& attributes) const {
        struct stat status {};
        if (::stat(pathOf(node).c_str(), &status) != 0) return false;
        attributes.ino = node;
        attributes.size = static_cast<std::uint64_t>(status.st_size);
        attributes.mode = status.st_mode;
        attributes.nlink = 1;
        return true;
    }

    void lookUp(const fuse_in_header& header, const char* name) {
        fuse_entry_out entry{};
        m_names.emplace_back(name);
        entry.nodeid = kRoot + m_names.size();
        if (look(entry.nodeid, entry.attr)) return reply(header, 0, &entry, sizeof entry);
        m_names.pop_back();
        reply(header, ENOENT, nullptr, 0);
    }

    void attributes(const fuse_in_header& header) {
        fuse_attr_out out{};
        if (!look(header.nodeid, out.attr)) return reply(header, ENOENT, nullptr, 0);
        reply(header, 0, &out, sizeof out);
    }

    void read(const fuse_in_header& header, const fuse_read_in& wanted) {
        std::vector<char> bytes(wanted.size);
        const int file = ::open(pathOf(header.nodeid).c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t got = ::pread(file, bytes.data(), bytes.size(), static_cast<off_t>(wanted.offset));
        ::close(file);
        got < 0 ? reply(header, EIO, nullptr, 0) : reply(header, 0, bytes.data(), static_cast<std::size_t>(got));
    }

    const std::string m_source;
    const int m_device;
    std::vector<std::string> m_names;
};

void onSignal(int number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;  // and without SA_RESTART, so that the one who reads notices
    ::sigaction(number, &action, nullptr);
}

}  // namespace

int main(int, char** argv) {
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(device) +
                                ",rootmode=40000,user_id=" + std::to_string(::getuid()) +
                                ",group_id=" + std::to_string(::getgid());
    if (device < 0 || ::mount("standing", argv[2], "fuse.standing", MS_NOSUID | MS_NODEV, options.c_str()) != 0) {
        std::perror("standing_folder: nothing can be mounted here");
        return kCannotMount;
    }
    onSignal(SIGUSR1, [](int) { g_standsStill = 1; });
    onSignal(SIGTERM, [](int) { g_ends = 1; });
    std::puts("mounted");
    std::fflush(stdout);
    Folder(argv[1], device).serve();
    ::umount2(argv[2], MNT_DETACH);  // whoever still waits gets an error when this process has ended
    return 0;
}
