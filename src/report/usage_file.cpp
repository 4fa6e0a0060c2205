#include "report/usage_file.h"

#include "base/file.h"
#include "run/options.h"
#include "run/text_output.h"

namespace frt {

bool write_usage_file(const std::string& path, int status, const std::string& body) {
  static const std::string kEmptyBody = R"("session":{},"plugins":[],"not_converted":[],"warnings":[])";
  std::string text = R"({"schema":"kestrel-usage 1","converter":)" + json_quote(kVersion);
  text += R"(,"build":)";
  text += kBuild;
  text += R"(,"result":")";
  text += status == 0 ? "converted" : "failed";
  text += "\",";
  text += body.empty() ? kEmptyBody : body;
  text += "}\n";
  OutputFile file;
  return file.open(path) && file.write(text) && file.commit();
}

}  // namespace frt
