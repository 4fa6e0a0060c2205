// VST3 class ids that JUCE makes from a plug-in's codes.
#pragma once

#include <string_view>

namespace frt {

// `class_id` in lower case.
inline bool is_juce_class(std::string_view class_id) {
  return class_id.size() >= 32 && class_id.starts_with("abcdef019182faeb");
}

}  // namespace frt
