#include "base/file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/text.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

namespace frt {
namespace {

// An open file that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }
  bool good() const { return number_ >= 0; }

 private:
  int number_;
};

// A look at what stands there must not wait for a pipe's other end.
constexpr int kLook = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

// read() until n bytes are there or the file ends; -1 on an error.
ssize_t read_fully(int descriptor, std::uint8_t* out, std::size_t n) {
  std::size_t done = 0;
  while (done < n) {
    const ssize_t got = ::read(descriptor, out + done, n - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return static_cast<ssize_t>(done);
}

}  // namespace

bool can_open(const std::string& path) { return Descriptor(::open(path.c_str(), kLook)).good(); }

bool is_folder(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::string working_directory() {
  std::error_code error;
  const std::string path = std::filesystem::current_path(error).string();
  return error ? std::string() : path;
}

std::optional<RegularFile> RegularFile::open(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  const int descriptor = ::open(path.c_str(), kLook);
  if (descriptor < 0) return std::nullopt;
  return RegularFile(descriptor);
}

RegularFile::RegularFile(RegularFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

RegularFile::~RegularFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool RegularFile::read(std::uint64_t at, std::uint8_t* out, std::size_t n) const {
  if (at > static_cast<std::uint64_t>(INT64_MAX) - n) return false;
  std::size_t done = 0;
  while (done < n) {
    const ssize_t got = ::pread(descriptor_, out + done, n - done, static_cast<off_t>(at + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    done += static_cast<std::size_t>(got);
  }
  return true;
}

bool is_empty_file(const std::string& path) {
  const Descriptor file(::open(path.c_str(), kLook));
  struct stat info {};
  // The end of a folder is whatever its file system makes of it.
  if (!file.good() || ::fstat(file.number(), &info) != 0 || S_ISDIR(info.st_mode)) return false;
  return ::lseek(file.number(), 0, SEEK_END) == 0;
}

std::string read_head(const std::string& path, std::size_t n) {
  const Descriptor file(::open(path.c_str(), kLook));
  std::string head(n, '\0');
  const ssize_t got =
      file.good() ? read_fully(file.number(), reinterpret_cast<std::uint8_t*>(head.data()), n) : ssize_t{0};
  head.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return head;
}

FileBytes FileBytes::with_room_for(std::size_t capacity) {
  FileBytes bytes;
  // Large pages: the first touch of a page costs more than the bytes that are read into it.
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  if (capacity >= 2 * kLargePage && capacity <= SIZE_MAX - kLargePage) {
    const std::size_t rounded = (capacity + kLargePage - 1) / kLargePage * kLargePage;
    bytes.data_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(kLargePage, rounded)));
#ifdef MADV_HUGEPAGE
    if (bytes.data_) ::madvise(bytes.data_.get(), capacity / kLargePage * kLargePage, MADV_HUGEPAGE);
#endif
  } else {
    bytes.data_.reset(static_cast<std::uint8_t*>(std::malloc(std::max<std::size_t>(capacity, 1))));
  }
  bytes.capacity_ = bytes.data_ ? capacity : 0;
  return bytes;
}

void FileBytes::set_size(std::size_t size) {
  size_ = std::min(size, capacity_);
#ifdef __SANITIZE_ADDRESS__
  __asan_unpoison_memory_region(data_.get(), size_);
  __asan_poison_memory_region(data_.get() + size_, capacity_ - size_);
#endif
}

std::optional<FileBytes> read_file(const std::string& path, const PieceReader& take) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  struct stat info {};
  if (!file.good() || ::fstat(file.number(), &info) != 0 || S_ISDIR(info.st_mode)) return std::nullopt;

  // The first piece decides whether the rest is wanted, before room is made for what the file claims to be.
  FileBytes bytes = FileBytes::with_room_for(kReadPiece);
  const std::uint64_t claimed =
      S_ISREG(info.st_mode) && info.st_size > 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
  if (claimed > SIZE_MAX / 2) return std::nullopt;
  for (std::size_t at = 0;;) {
    if (bytes.capacity() - at < kReadPiece) {
      // One piece more than the claim, so that the end of the file is seen without growing again.
      const std::size_t wanted = at < claimed ? static_cast<std::size_t>(claimed) + kReadPiece : 2 * at + kReadPiece;
      FileBytes larger = FileBytes::with_room_for(wanted);
      if (larger.capacity() == 0) return std::nullopt;
      std::memcpy(larger.data(), bytes.data(), at);
      bytes = std::move(larger);
    }
    const ssize_t got = read_fully(file.number(), bytes.data() + at, kReadPiece);
    if (got < 0) return std::nullopt;
    const std::size_t size = static_cast<std::size_t>(got);
    if (size > 0 && take && !take(bytes.data() + at, size, at)) return std::nullopt;
    at += size;
    if (size < kReadPiece) {
      bytes.set_size(at);
      return bytes;
    }
  }
}

namespace {

// The folder of a path with its separator, empty for a bare name. Only "/": a name may hold a backslash here.
std::string folder_with_separator(const std::string& path) {
  const std::size_t at = path.rfind('/');
  return at == std::string::npos ? "" : path.substr(0, at + 1);
}

// Follows symbolic links at the end of a path, also where the last one leads to nothing; empty if they don't end.
std::string follow_links(std::string path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    char link[4096];
    const ssize_t n = ::readlink(path.c_str(), link, sizeof link);
    if (n < 0 || static_cast<std::size_t>(n) == sizeof link) return n < 0 ? path : "";
    const std::string to(link, static_cast<std::size_t>(n));
    path = to.starts_with('/') ? to : folder_with_separator(path) + to;
  }
  return "";
}

}  // namespace

bool OutputFile::open(const std::string& path) {
  discard();
  struct stat there {};
  const bool exists = ::stat(path.c_str(), &there) == 0;
  if (!exists && errno != ENOENT) return false;
  if (exists && S_ISDIR(there.st_mode)) return false;

  if (exists && !S_ISREG(there.st_mode)) {
    target_ = path;
    descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    good_ = descriptor_ >= 0;
    return good_;
  }

  target_ = follow_links(path);
  if (target_.empty() || target_.ends_with('/')) return false;
  // A file that may not be written is not replaced either, though its folder would allow it.
  if (exists && !Descriptor(::open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY)).good()) return false;
  if (!open_temporary(folder_with_separator(target_))) return false;
  if (exists) {
    // What the file was allowed to whom stays, as far as this process may say so.
    if (::fchown(descriptor_, there.st_uid, there.st_gid) != 0) errno = 0;
    if (::fchmod(descriptor_, there.st_mode & 0777) != 0) errno = 0;
  }
  good_ = true;
  return true;
}

bool OutputFile::open_temporary(const std::string& folder) {
  // Short, so that it fits wherever the target's name does.
  for (int n = 1; n <= 1000; ++n) {
    temporary_ = format_text("%s.ferrite-%ld-%d.tmp", folder.c_str(), static_cast<long>(::getpid()), n);
    descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) return true;
    if (errno != EEXIST) break;
  }
  temporary_.clear();
  return false;
}

bool OutputFile::write(const char* data, std::size_t n) {
  while (good_ && n > 0) {
    const ssize_t done = ::write(descriptor_, data, n);
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) {
      good_ = false;
      break;
    }
    data += done;
    n -= static_cast<std::size_t>(done);
  }
  return good_;
}

bool OutputFile::commit() {
  if (descriptor_ < 0) return false;
  // Some file systems tell only here that the bytes found no place.
  if (::close(std::exchange(descriptor_, -1)) != 0) good_ = false;
  if (good_ && !temporary_.empty()) good_ = std::rename(temporary_.c_str(), target_.c_str()) == 0;
  const bool done = good_;
  if (done) temporary_.clear();
  discard();
  return done;
}

void OutputFile::discard() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  temporary_.clear();
  target_.clear();
  good_ = false;
}

bool append_to_file(const std::string& path, std::string_view text) {
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
  struct stat before {};
  if (!file.good() || ::fstat(file.number(), &before) != 0) return false;
  while (!text.empty()) {
    const ssize_t done = ::write(file.number(), text.data(), text.size());
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) {
      if (::ftruncate(file.number(), before.st_size) != 0) errno = 0;
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(done));
  }
  return true;
}

}  // namespace frt
