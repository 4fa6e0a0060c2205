// How far a run is: the line protocol that a front end reads on standard error.
#pragma once

namespace frtgui {

class Progress {
 public:
  // Tells step `step` of `total` with a stage text. The result is not looked at by a run.
  virtual bool report(int step, int total, const char* stage) = 0;
  virtual ~Progress() = default;
};

// One line a report on standard error, flushed.
class StderrProgress : public Progress {
 public:
  bool report(int step, int total, const char* stage) override;
};

}  // namespace frtgui
