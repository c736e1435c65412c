#include "options/profile_file.h"

#include <fstream>
#include <random>
#include <string>
#include <system_error>

namespace zorvane {
namespace {

// A random name, so that two instances of the program saving at once do not
// write into the same temporary file.
std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
    std::random_device random;
    const unsigned long long tag = (static_cast<unsigned long long>(random()) << 32) ^ random();
    std::filesystem::path temporary = path;
    temporary += std::string(".").append(std::to_string(tag)).append(".tmp");
    return temporary;
}

bool writeWhole(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    out.close();
    return !out.fail();
}

} // namespace

std::optional<ProfileText> ReadProfileFile(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::not_found) return ProfileText();
    if (type != std::filesystem::file_type::regular) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    std::string bytes;
    char chunk[4096];
    // read() turns a failing disk into badbit rather than an exception.
    while (in.read(chunk, sizeof chunk) || in.gcount() > 0)
        bytes.append(chunk, static_cast<std::size_t>(in.gcount()));
    if (in.bad() || !in.eof()) return std::nullopt;
    return ProfileText(bytes);
}

bool WriteProfileFile(const std::filesystem::path& path, const ProfileText& text) {
    const std::filesystem::path temporary = temporaryBeside(path);
    std::error_code error;
    if (writeWhole(temporary, text.Text())) {
        std::filesystem::rename(temporary, path, error);
        if (!error) return true;
    }
    std::filesystem::remove(temporary, error);
    return false;
}

} // namespace zorvane
