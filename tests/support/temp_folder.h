// A folder for one test's files, gone with it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace frt::test {

inline std::string read_text(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ferrite-test-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string at(std::string_view name) const { return (path_ / name).string(); }

  // Writes a file and gives its path.
  std::string put(std::string_view name, std::string_view content) const {
    std::ofstream(path_ / name, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    return at(name);
  }
  std::string put(std::string_view name, const std::vector<unsigned char>& content) const {
    return put(name, std::string_view(reinterpret_cast<const char*>(content.data()), content.size()));
  }

  // How many entries stand in the folder itself.
  std::size_t count() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

 private:
  std::filesystem::path path_;
};

}  // namespace frt::test
