// activation_token: asks the Wayland compositor for leave to bring a window to the front, as a desktop does for a
// program that its user starts, and prints the token. Speaks to the compositor's socket itself: a message is the number
// of an object, its own length and the number of the request or event, and the arguments in units of four bytes.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kDisplay = 1, kRegistry = 2, kActivation = 3, kToken = 4;
constexpr std::uint32_t kGetRegistry = 1, kBind = 0, kGetToken = 1, kCommit = 3;  // requests
constexpr std::uint32_t kGlobal = 0, kDone = 0;                                   // events
const std::string kInterface = "xdg_activation_v1";

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "activation_token: %s\n", what);
    std::exit(1);
}

class Message {
public:
    Message(std::uint32_t object, std::uint32_t request) : m_words{object, request} {}

    Message& number(std::uint32_t value) {
        m_words.push_back(value);
        return *this;
    }

    Message& text(const std::string& value) {
        number(static_cast<std::uint32_t>(value.size()) + 1);
        const std::size_t at = m_words.size();
        m_words.resize(at + value.size() / 4 + 1);  // with the zero at its end
        std::memcpy(&m_words[at], value.data(), value.size());
        return *this;
    }

    void send(int socket) {
        const std::size_t bytes = 4 * m_words.size();
        m_words[1] |= static_cast<std::uint32_t>(bytes) << 16;
        if (write(socket, m_words.data(), bytes) != static_cast<ssize_t>(bytes)) fail("the compositor does not listen");
    }

private:
    std::vector<std::uint32_t> m_words;
};

int connectToCompositor() {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    const char* name = std::getenv("WAYLAND_DISPLAY");
    if (!folder || !name) fail("there is no Wayland");
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s/%s", folder, name);
    if (connect(made, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) fail("no compositor answers");
    return made;
}

void readAll(int socket, void* to, std::size_t bytes) {
    for (std::size_t got = 0; got < bytes;) {
        const ssize_t more = read(socket, static_cast<char*>(to) + got, bytes - got);
        if (more <= 0) fail("the compositor has hung up");
        got += static_cast<std::size_t>(more);
    }
}

// The text whose length is the word `at`, which does not count on the compositor.
std::string textAt(const std::vector<std::uint32_t>& words, std::size_t at) {
    if (at >= words.size() || words[at] == 0 || words[at] > 4 * (words.size() - at - 1)) return {};
    return {reinterpret_cast<const char*>(&words[at + 1]), words[at] - 1};
}

}  // namespace

int main() {
    const int compositor = connectToCompositor();
    Message(kDisplay, kGetRegistry).number(kRegistry).send(compositor);
    for (;;) {
        std::uint32_t header[2];
        readAll(compositor, header, sizeof header);
        const std::uint32_t event = header[1] & 0xffff, bytes = header[1] >> 16;
        if (bytes < sizeof header) fail("the compositor speaks another language");
        std::vector<std::uint32_t> words((bytes - sizeof header) / 4);
        readAll(compositor, words.data(), 4 * words.size());
        if (header[0] == kDisplay && event == 0) fail("the compositor has refused");
        if (header[0] == kRegistry && event == kGlobal && textAt(words, 1) == kInterface) {
            Message(kRegistry, kBind).number(words[0]).text(kInterface).number(1).number(kActivation).send(compositor);
            Message(kActivation, kGetToken).number(kToken).send(compositor);
            Message(kToken, kCommit).send(compositor);
        }
        if (header[0] == kToken && event == kDone) {
            std::puts(textAt(words, 0).c_str());
            return 0;
        }
    }
}
