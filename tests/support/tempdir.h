// A temporary folder for one test, removed afterwards.

#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace kalmo_test {

class TempDir {
public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kalmo-test-XXXXXX").string();
        char* made = mkdtemp(pattern.data());
        root_ = made ? made : pattern;
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(root_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string path(const std::string& name = "") const { return name.empty() ? root_.string() : (root_ / name).string(); }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream out(path(name), std::ios::binary);
        out << text;
    }

    std::string read(const std::string& name) const {
        std::ifstream in(path(name), std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return all.str();
    }

    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }

private:
    std::filesystem::path root_;
};

}  // namespace kalmo_test
