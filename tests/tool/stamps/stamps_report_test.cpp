// The report's rows as they are made on the reading threads: each row alone, what comes
// between rows apart, and CSV fields quoted wherever a reader would otherwise split them.
#include <gtest/gtest.h>

#include "tool/stamps/stamps_report.h"

namespace hublet {
namespace tool {
namespace {

SceneStamp IrregularStamp(const std::wstring& saver) {
  SceneStamp stamp;
  stamp.file = "shots/a.max";
  stamp.status = StampStatus::kIrregular;
  stamp.note = "the subject is not \"USER on MACHINE\"";
  stamp.saver.present = stamp.saver.isText = true;
  stamp.saver.value = saver;
  return stamp;
}

TEST(StampsReport, CsvQuotesEveryFieldThatWouldSplitALineOrAField) {
  const std::unique_ptr<StampsPrinter> csv = MakeStampsPrinter("csv", false);
  for (const wchar_t* saver : {L"anna,bob", L"anna\nbob", L"anna\rbob"}) {
    const std::string row = csv->Row(IrregularStamp(saver));
    EXPECT_NE(row.find(",\"" + std::string(saver, saver + 8) + "\","), std::string::npos) << row;
  }
  EXPECT_NE(csv->Row(IrregularStamp(L"anna")).find(",anna,"), std::string::npos);
  EXPECT_NE(csv->Row(IrregularStamp(L"anna")).find("\"the subject is not \"\"USER on MACHINE\"\"\""),
            std::string::npos);
  EXPECT_EQ(csv->BeforeRow(true), "");
}

TEST(StampsReport, WhatComesBetweenRowsIsApartFromTheRows) {
  const SceneStamp stamp = IrregularStamp(L"anna");
  const std::unique_ptr<StampsPrinter> json = MakeStampsPrinter("json", false);
  EXPECT_EQ(json->BeforeRow(true), "");
  EXPECT_EQ(json->BeforeRow(false), ",");
  EXPECT_EQ(json->Row(stamp).substr(0, 6), "\n    {");
  const std::unique_ptr<StampsPrinter> text = MakeStampsPrinter("text", false);
  EXPECT_EQ(text->BeforeRow(true).substr(0, 6), "STATUS");
  EXPECT_EQ(text->BeforeRow(false), "");
  EXPECT_EQ(text->Row(stamp), text->Row(stamp));
}

}  // namespace
}  // namespace tool
}  // namespace hublet
