#include "session/clips/midi_notes.h"

#include <algorithm>
#include <string_view>

#include "image/content_types.h"

namespace frt {
namespace {

// Notes: a mark, u32 count at + 11 of it, then the notes from + 15 on; the chunk's zero is the first note's position.
namespace chunk_layout {
constexpr std::string_view kMark = "MdNLB";
constexpr std::uint64_t kCount = 11, kEvents = 15, kLeast = 20;
}  // namespace chunk_layout

// Note
//   + 0   u40  position, ticks
//   + 8   u8   note
//   + 9   u40  length, ticks
//   + 17  u8   velocity
namespace note_layout {
constexpr std::uint64_t kNote = 8, kLength = 9, kVelocity = 17, kRead = 18, kSize = 35;
}  // namespace note_layout

std::vector<std::uint64_t> note_marks(ByteView image) {
  std::vector<std::uint64_t> marks;
  for (std::uint64_t p = image.find('M', 0, image.size()); p < image.size(); p = image.find('M', p + 1, image.size()))
    if (image.equals(p, chunk_layout::kMark)) marks.push_back(p);
  return marks;
}

}  // namespace

MidiNote NoteChunk::operator[](std::uint32_t i) const {
  namespace at = note_layout;
  const std::uint64_t e = i * at::kSize;
  if (i >= count_ || !events_.has(e, at::kRead)) return {};
  return {*events_.u40(e) - zero_ticks_, *events_.u40(e + at::kLength), *events_.u8(e + at::kNote),
          *events_.u8(e + at::kVelocity)};
}

std::int64_t NoteChunk::span() const {
  std::uint64_t span = 0;
  for (std::uint32_t i = 0; i < count_; ++i) {
    const MidiNote note = (*this)[i];
    span = std::max(span, note.position + note.length);
  }
  return static_cast<std::int64_t>(span);
}

std::vector<NoteChunk> read_note_chunks(ByteView image, const std::vector<Block>& roots) {
  constexpr std::uint64_t kEvent = note_layout::kSize, kRead = note_layout::kRead;
  std::vector<NoteChunk> chunks;
  std::vector<std::uint64_t> marks;
  bool marks_read = false;
  for (const Block& root : roots) {
    if (root.content_type != content::kMidiData) continue;
    if (!marks_read) marks = note_marks(image);
    marks_read = true;
    for (std::uint64_t k = root.start + block_layout::kContentType; k + kEvent < root.end();) {
      if (k + chunk_layout::kMark.size() >= image.size()) break;
      const auto mark = std::lower_bound(marks.begin(), marks.end(), k);
      if (mark == marks.end() || !image.has(*mark, chunk_layout::kLeast)) break;
      const std::uint64_t first = *mark + chunk_layout::kEvents;
      // The count is a claim: only notes that the image holds are there.
      const std::uint64_t room = image.size() - first;
      const std::uint64_t most = room < kRead ? 0 : (room - kRead) / kEvent + 1;
      const auto count =
          static_cast<std::uint32_t>(std::min<std::uint64_t>(*image.u32(*mark + chunk_layout::kCount), most));
      chunks.emplace_back(image.clamped(first, room), *image.u40(first), count);
      k = first + count * kEvent;
    }
  }
  return chunks;
}

}  // namespace frt
