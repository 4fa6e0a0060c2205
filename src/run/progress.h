// How far a run is: the line protocol that a front end reads on standard error.
#pragma once

namespace frtgui {

// The steps of a run, in order.
enum class Step { kReading, kClips, kTracks, kWriting, kMedia, kReport, kDone };
inline constexpr int kSteps = 6;

constexpr int number_of(Step step) { return static_cast<int>(step); }
const char* name_of(Step step);

class Progress {
 public:
  // Tells step `step` of `total` with a stage text. The result is not looked at by a run.
  virtual bool report(int step, int total, const char* stage) = 0;
  virtual ~Progress() = default;
};

// Tells that a step begins, if anyone listens.
void report_step(Progress* progress, Step step);

// One line a report on standard error, flushed.
class StderrProgress : public Progress {
 public:
  bool report(int step, int total, const char* stage) override;
};

}  // namespace frtgui
