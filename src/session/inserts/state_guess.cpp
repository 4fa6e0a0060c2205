#include "session/inserts/state_guess.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "base/byte_scan.h"
#include "base/ranges.h"
#include "session/inserts/braces.h"
#include "session/inserts/tag_repeats.h"

namespace frt {
namespace {

constexpr bool is_printable(std::uint8_t c) { return c >= 32 && c <= 126; }
constexpr bool is_text(std::uint8_t c) { return is_printable(c) || c == '\t' || c == '\n' || c == '\r'; }

// Where a length and its document stand to each other: so many bytes ahead, and so many more than the document's own.
constexpr std::uint64_t kBackOffsets[] = {4, 8, 12, 16, 20, 24};
constexpr std::uint64_t kSurplus[] = {0, 4, 8, 12, 16, 20, 24};

constexpr int kWeak = 3, kGood = 6;
constexpr std::uint64_t kLeastDocument = 32;

// How much of any stretch of the block is text, without counting all of it each time.
class TextCount {
 public:
  TextCount(ByteView bytes, std::uint64_t from) : bytes_(bytes), from_(from) {
    std::uint64_t sum = 0;
    for (std::uint64_t at = from; at < bytes.size(); at += kStep) {
      sums_.push_back(sum);
      sum += count(at, std::min<std::uint64_t>(at + kStep, bytes.size()));
    }
    sums_.push_back(sum);
  }
  std::uint64_t between(std::uint64_t from, std::uint64_t to) const { return before(to) - before(from); }

 private:
  static constexpr std::uint64_t kStep = 64;
  std::uint64_t count(std::uint64_t from, std::uint64_t to) const {
    const std::uint8_t* const data = bytes_.data();
    return static_cast<std::uint64_t>(std::count_if(data + from, data + to, is_text));
  }
  std::uint64_t before(std::uint64_t to) const {
    const std::uint64_t step = (to - from_) / kStep;
    return sums_[step] + count(from_ + step * kStep, to);
  }

  ByteView bytes_;
  std::uint64_t from_;
  std::vector<std::uint64_t> sums_;  // of all steps before each
};

class Guesses {
 public:
  Guesses(ByteView bytes, std::uint64_t start) : bytes_(bytes), start_(start), body_(start + 33), end_(bytes.size()) {}

  StateGuess best() {
    if (start_ + 97 < end_) by_text();
    by_chunk();
    if (start_ + 65 < end_) by_length();
    guess_signature(bytes_, start_, best_);
    return best_;
  }

 private:
  void offer(int score, std::uint64_t offset, std::uint64_t length, std::string_view label) {
    if (score > best_.score) best_ = {offset, length, label, 1, score};
  }

  void by_text() {
    const TextCount text(bytes_, body_);
    const std::uint64_t length = end_ - body_;
    if (length >= 256 && 100 * text.between(body_, end_) >= 96 * length) offer(kWeak, body_, length, "text (no tag)");
    constexpr std::uint64_t kLeast = 64;
    BraceIndex(bytes_, body_, end_).each([&](std::uint64_t q, std::optional<std::uint64_t> close) {
      if (q + 65 >= end_) return false;
      const std::uint64_t span = close ? *close + 1 - q : 0;
      if (span < kLeast || 100 * text.between(q, q + span) < 90 * span) return true;
      offer(kGood, q, span, "braces balance");
      return false;
    });
  }

  // The first chunk's data, or those of the only one behind a list of controls that can hold a state.
  void by_chunk() {
    constexpr std::uint64_t kName = 41, kNameLength = 32, kData = 73, kLeastEnd = 105;
    if (start_ + kLeastEnd <= end_ && !begins_with_controls(bytes_, start_, end_) && best_.score < kGood) {
      const std::string_view name = bytes_.text(start_ + kName, kNameLength).value_or("");
      const auto name_end = std::find_if_not(name.begin(), name.end(), is_printable);
      if (std::all_of(name_end, name.end(), [](char c) { return c == 0; })) {
        offer(kGood, start_ + kData, end_ - start_ - kData, "AAX chunk data");
      }
    }
    if (best_.score >= kGood) return;
    const auto second = state_behind_controls(bytes_, start_);
    if (second && second->count == 1) {
      offer(kGood, second->chunk.data(), second->chunk.data_length(), kChunkBehindControls);
    }
  }

  // A length whose document ends where the block does. Where the word at r is the length of what begins at r + offset
  // and ends at the block's end, with a surplus, r and the word differ from the end by surplus less offset.
  void by_length() {
    static constexpr int kScores[] = {5, 3, 3, 2, 2, 1};
    constexpr std::int64_t kMost = 24;
    constexpr std::uint64_t kLeast = 64;
    StateGuess closest;
    for (std::uint64_t r = std::max<std::uint64_t>(start_, body_ - kMost); r + 4 <= end_; ++r) {
      const std::uint64_t above = *bytes_.u32(r) + r + kMost - end_;  // the difference, from 0 on
      if (above > 2 * kMost || above % 4 != 0) continue;
      const auto difference = static_cast<std::int64_t>(above) - kMost;
      for (std::size_t i = 0; i < std::size(kBackOffsets); ++i) {
        const std::uint64_t q = r + kBackOffsets[i];
        const std::int64_t surplus = difference + static_cast<std::int64_t>(kBackOffsets[i]);
        if (surplus < 0 || surplus > kMost || q < body_ || q + kLeast > end_) continue;
        if (kScores[i] > closest.score || (kScores[i] == closest.score && q < closest.offset)) {
          closest = {q, end_ - q, "length closes", 1, kScores[i]};
        }
      }
    }
    if (closest.score > best_.score) best_ = closest;
  }

  ByteView bytes_;
  std::uint64_t start_, body_, end_;
  StateGuess best_;
};

// ---- tags ----

constexpr std::array<std::string_view, 12> TAGS = {
    "VC2!", "FFBS", "XPst", "hsin", "FabF", "HXMC", "CMXH", "<?xml", "<AllData", "#AMS", "22 serialization::archive",
    "RIFF"};
constexpr std::string_view kZlib = "zlib", kText = "text";

// The first two bytes of each tag.
std::uint8_t begins_tag(const ScanWindow<1>& w, std::size_t i) {
  const std::uint8_t a = w[i], b = w[i + 1];
  const auto is = [a, b](std::uint8_t first, std::uint8_t second) {
    return static_cast<std::uint8_t>(static_cast<std::uint8_t>(a == first) & static_cast<std::uint8_t>(b == second));
  };
  return static_cast<std::uint8_t>(is('V', 'C') | is('F', 'F') | is('X', 'P') | is('h', 's') | is('F', 'a') |
                                   is('H', 'X') | is('C', 'M') | is('<', '?') | is('<', 'A') | is('#', 'A') |
                                   is('2', '2') | is('R', 'I') | is('x', 0x01) | is('x', 0x5e) | is('x', 0x9c) |
                                   is('x', 0xda));
}

std::string_view tag_at(ByteView bytes, std::uint64_t p) {
  for (const std::string_view tag : TAGS) {
    if (bytes.equals(p, tag)) return tag;
  }
  return *bytes.u8(p) == 'x' ? kZlib : std::string_view();
}

class TagSearch {
 public:
  TagSearch(ByteView bytes, std::uint64_t start, StateGuess& best)
      : bytes_(bytes), start_(start), end_(bytes.size()), repeats_(bytes), best_(best) {}

  void run() {
    constexpr std::uint64_t kFirst = 24, kLeastBehind = 17;
    const std::uint64_t stop = end_ - kLeastBehind;
    find_texts(start_ + kFirst);
    each_position<1>(bytes_, start_ + kFirst, stop, begins_tag, [this](std::uint64_t p) {
      const std::string_view tag = tag_at(bytes_, p);
      if (tag.empty() || is_signature(p)) return true;
      texts_up_to(p);
      next_ = p + 1;
      offer({p, end_ - p, tag, 1, tag == kZlib ? 5 : 7});
      by_lengths_ahead(p, tag);
      return true;
    });
    texts_up_to(stop);
  }

 private:
  static constexpr std::uint64_t kLeastText = 120;

  void offer(const StateGuess& guess) {
    if (betters(guess.score, guess.offset)) best_ = guess;
  }
  bool betters(int score, std::uint64_t p) const {
    return score > best_.score || (score == best_.score && p < best_.offset);
  }

  bool is_signature(std::uint64_t p) const { return p == start_ + 25; }
  bool is_text_at(std::uint64_t p) const { return is_text(*bytes_.u8(p)); }

  // All texts that are long enough. Each stretch is looked at from its end, so that most bytes of what isn't text are
  // passed over.
  void find_texts(std::uint64_t at) {
    while (at + kLeastText <= end_) {
      std::uint64_t p = at + kLeastText;
      while (p > at && is_text_at(p - 1)) --p;
      if (p == at) {
        p = at + kLeastText;
        while (p < end_ && is_text_at(p)) ++p;
        texts_.push_back({at, p});
      }
      at = p;
    }
  }

  // Tries the positions of texts below `limit`. Further inside a text than a length stands ahead, lengths would be made
  // of text, so larger than any block that comes.
  void texts_up_to(std::uint64_t limit) {
    constexpr std::uint64_t kLeastWordOfText = 0x09090909, kFurthestAhead = 24;
    for (; text_ < texts_.size(); ++text_) {
      const Range& text = texts_[text_];
      std::uint64_t to = std::min(limit, text.end - kLeastText + 1);
      if (end_ - start_ < kLeastWordOfText) to = std::min(to, text.start + kFurthestAhead);
      for (std::uint64_t p = std::max(next_, text.start); p < to; ++p) {
        if (!is_signature(p)) by_lengths_ahead(p, kText);
      }
      if (text.end > limit) return;
    }
  }

  void by_lengths_ahead(std::uint64_t p, std::string_view tag) {
    for (std::size_t place = 0; place < std::size(kBackOffsets) && p - start_ >= kBackOffsets[place]; ++place) {
      const std::uint64_t word = *bytes_.u32(p - kBackOffsets[place]);
      if (word < kLeastDocument || word > end_ - start_) continue;
      for (const std::uint64_t surplus : kSurplus) {
        if (word - surplus < kLeastDocument) break;
        by_length(p, word - surplus, tag, static_cast<int>(place));
      }
    }
  }

  void by_length(std::uint64_t p, std::uint64_t length, std::string_view tag, int place) {
    constexpr int kTagged = 8, kLengthSeen = 6, kTwice = 6;
    if (length > end_ - p) return;
    const std::uint64_t left = end_ - p - length;
    int near = left == 0 ? 6 : left < 65 ? 3 : 0;
    const int rest = (tag == kText ? 0 : kTagged) + kLengthSeen - place;
    if (!betters(near + kTwice + rest, p)) return;  // even if it stands twice
    const bool twice = stands_again(p, length, length) || stands_again(p, length + 4, length);
    if (twice) near += kTwice;
    if (tag == kText && near == 0) return;
    offer({p, length, tag, twice ? 2 : 1, near + rest});
  }

  // The copy must fit as a whole; of a long one the beginning is compared.
  bool stands_again(std::uint64_t p, std::uint64_t distance, std::uint64_t length) {
    constexpr std::uint64_t kMostCompared = 4096;
    return bytes_.has(p + distance, length) && repeats_.repeats(p, distance, std::min(length, kMostCompared));
  }

  ByteView bytes_;
  std::uint64_t start_, end_;
  TagRepeats repeats_;
  StateGuess& best_;
  std::vector<Range> texts_;
  std::size_t text_ = 0;    // the first that isn't done
  std::uint64_t next_ = 0;  // no text begins below
};

}  // namespace

void guess_signature(ByteView bytes, std::uint64_t start, StateGuess& best) {
  constexpr std::uint64_t kLeastEnd = 40;
  if (start + kLeastEnd < bytes.size()) TagSearch(bytes, start, best).run();
}

std::optional<ChunkBehindControls> state_behind_controls(ByteView bytes, std::uint64_t start) {
  if (!begins_with_controls(bytes, start, bytes.size())) return std::nullopt;
  ChunkBehindControls found;
  const AaxChunks walk = aax_chunks(bytes, start, bytes.size());
  for (std::size_t i = 1; i < walk.chunks.size(); ++i) {
    if (can_hold_state(bytes, walk.chunks[i]) && found.count++ == 0) found.chunk = walk.chunks[i];
  }
  return found.count == 0 ? std::nullopt : std::optional(found);
}

std::optional<StateGuess> guess_state(ByteView bytes, std::uint64_t start) {
  const StateGuess best = Guesses(bytes, start).best();
  if (best.score < kWeak || best.length < kLeastDocument) return std::nullopt;
  return best;
}

}  // namespace frt
