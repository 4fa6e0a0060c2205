// Files: can one be opened, reading one whole, and writing one so that what stood there survives a failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "base/text_target.h"

namespace frt {

// True if the path can be opened for reading. A folder can, as for fopen: reading it is what fails then.
bool can_open(const std::string& path);

// True if a folder stands at the path.
bool is_folder(const std::string& path);

// The folder that relative paths count from; empty if it can't be told.
std::string working_directory();

// A regular file, open for reading at any place. What stands at the path is asked before it is opened: a path can come
// from a stranger's session, and no device, pipe or folder is touched for it.
class RegularFile {
 public:
  static std::optional<RegularFile> open(const std::string& path);
  RegularFile(RegularFile&& other) noexcept;
  RegularFile& operator=(RegularFile&&) = delete;
  ~RegularFile();

  // n bytes from `at` on; false if the file doesn't hold them.
  bool read(std::uint64_t at, std::uint8_t* out, std::size_t n) const;

 private:
  explicit RegularFile(int descriptor) : descriptor_(descriptor) {}
  int descriptor_ = -1;
};

// True if the file holds 0 bytes: its end, asked for, is position 0. False for a folder, and for what cannot be
// opened or has no end to ask for (a pipe).
bool is_empty_file(const std::string& path);

// The first bytes of a file, at most n; fewer if it is shorter, none if it cannot be read.
std::string read_head(const std::string& path, std::size_t n);

// Owned bytes that were never set to anything before they were filled. AddressSanitizer sees a read behind size().
class FileBytes {
 public:
  FileBytes() = default;
  // Room for `capacity` bytes; on failure the room is 0.
  static FileBytes with_room_for(std::size_t capacity);

  std::uint8_t* data() { return data_.get(); }
  const std::uint8_t* data() const { return data_.get(); }
  std::size_t capacity() const { return capacity_; }
  std::size_t size() const { return size_; }
  void set_size(std::size_t size);
  ByteView view() const { return {data_.get(), size_}; }

 private:
  struct Release {
    void operator()(std::uint8_t* p) const { std::free(p); }
  };
  std::unique_ptr<std::uint8_t[], Release> data_;
  std::size_t capacity_ = 0;
  std::size_t size_ = 0;
};

// Called for every piece while it is read, in order and while it is still in the processor's cache: the bytes, and
// how far into the file they begin. Every piece but the last is a multiple of kReadPiece long, so it begins at one.
// False stops the reading.
using PieceReader = std::function<bool(std::uint8_t* piece, std::size_t size, std::uint64_t at)>;
inline constexpr std::size_t kReadPiece = std::size_t{256} * 1024;

// A whole file; nothing if it cannot be opened or read, if there is no memory for it, or if `take` said stop.
std::optional<FileBytes> read_file(const std::string& path, const PieceReader& take = nullptr);

// A file under construction. The bytes go to a temporary file beside the target, which takes the target's name when
// all is written, so that whatever stood there is unharmed by a full disc or a write error. A symbolic link stays a
// link: the file it leads to is replaced. A target that is no regular file (a device, a pipe) is written directly.
class OutputFile final : public TextTarget {
 public:
  OutputFile() = default;
  ~OutputFile() override { discard(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // False where no file can be written under that name: a missing folder, no permission, a folder.
  bool open(const std::string& path);
  // Takes n bytes; false once anything could not be written.
  bool write(const char* data, std::size_t n) override;
  bool write(std::string_view text) { return write(text.data(), text.size()); }
  // Gives the file its name. False if anything could not be written since `open`: the target is then as it was.
  bool commit();

 private:
  bool open_temporary(const std::string& folder);
  void discard();

  int descriptor_ = -1;
  bool good_ = false;
  std::string target_;
  std::string temporary_;  // empty where the target is written directly
};

// Puts text behind what a file holds, or makes the file. False if it can't: the file is then as it was.
bool append_to_file(const std::string& path, std::string_view text);

}  // namespace frt
