// Inserts: where each sits, what marks around it say, which of its controls are automated, and what holds its settings.
#include <gtest/gtest.h>

#include "support/tables.h"

namespace frt::test {
namespace {

TEST(Inserts, AStripsChainWithItsMarksAndAutomation) {
  SessionBuilder s;
  s.plugin_name("ToneEqua", "Equaliser").plugin_name("ToneEqua", "Other");
  Track& vox = s.track("Vox").insert(Insert("ToneEqua").chunk("plug", "a", {1, 2, 3}).key(7).bypass());
  vox.insert(Insert("ToneComp", {4, 5})
                 .deactivate()
                 .multi_mono(2)
                 .automate({"Gain", 3, 0.5, {{100, 0.25}, {200, 0.75}}, "dB"}));
  vox.hardware_insert("Out 3-4");
  s.instrument("Keys").insert(Insert("Synt\001One", {}));
  const Tables tables = tables_of(s);
  EXPECT_EQ(tables.rows("inserts"),
            "0: \"ToneEqua\" size=76 key=7 bypassed text=\"Equapluga\"\n"
            "1: \"ToneComp\" size=75 channels=2 inactive text=\"Compplugsettings\" | automated \"Gain\" #3 "
            "label=\"dB\" 0.5 100/0.25 200/0.75\n"
            "2: \"Synt.One\" size=73");
  EXPECT_EQ(tables.rows("inserts of strips"), "\"Keys\" 2\n\"Vox\" 0 1");
  EXPECT_EQ(tables.rows("plug-in names"), "\"ToneEqua\" \"Equaliser\"");
  EXPECT_EQ(tables.rows("multi-mono inserts"), "0: insert 1 on=\"Vox\"");
  EXPECT_EQ(tables.rows("hardware inserts"), "0: \"Vox\" to \"Out 3-4\"");
}

}  // namespace
}  // namespace frt::test
