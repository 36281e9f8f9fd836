#include <unistd.h>

#include <filesystem>
#include <string>

#include "fuzz/FuzzTarget.h"

namespace qm::test {

namespace {

class FuzzFile {
public:
    FuzzFile()
        : m_path((std::filesystem::temp_directory_path() / "quillmere-fuzz-XXXXXX").string()),
          m_descriptor(::mkstemp(m_path.data())) {}
    ~FuzzFile() {
        ::close(m_descriptor);
        ::unlink(m_path.c_str());
    }

    const std::string& path() const { return m_path; }

    void write(const std::uint8_t* data, std::size_t size) const {
        promise(::ftruncate(m_descriptor, 0) == 0 &&
                ::pwrite(m_descriptor, data, size, 0) == static_cast<ssize_t>(size));
    }

private:
    std::string m_path;
    int m_descriptor;
};

const FuzzFile& fuzzFile() {
    static const FuzzFile file;
    return file;
}

}  // namespace

const std::string& inputPath() {
    return fuzzFile().path();
}

std::shared_ptr<const FileBytes> fileOf(const std::uint8_t* data, std::size_t size) {
    fuzzFile().write(data, size);
    auto opened = FileBytes::open(inputPath());
    promise(static_cast<bool>(opened));
    return opened.value();
}

}  // namespace qm::test
