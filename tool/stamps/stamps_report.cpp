#include "tool/stamps/stamps_report.h"

#include <algorithm>
#include <vector>

#include "platform/wide_text.h"
#include "tool/common/json_writer.h"
#include "tool/common/shown_text.h"
#include "tool/stamps/stamp_fields.h"

namespace hublet {
namespace tool {
namespace {

// Columns count characters, not bytes: UTF-8 continuation bytes take no room.
std::size_t Width(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text) width += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return width;
}

// A line of cells, each but the last padded to its column's width and two spaces; a longer
// cell pushes the rest of its line along.
std::string Line(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i + 1 < cells.size(); ++i)
    line += cells[i] + std::string(std::max(widths[i], Width(cells[i])) - Width(cells[i]) + 2, ' ');
  return line + cells.back() + "\n";
}

std::string Counts(const StampTally& tally, bool json) {
  std::string text;
  for (int i = 0; i < kStampStatusCount; ++i) {
    if (!text.empty()) text += ", ";
    const StampStatus status = static_cast<StampStatus>(i);
    const std::string name = StampStatusName(status);
    const std::string count = std::to_string(tally.Count(status));
    text += json ? JsonString(name) + ": " + count : count + " " + name;
  }
  return text;
}

std::string ShownText(const SummaryText& text) {
  if (!text.present) return "-";
  if (!text.isText) return "(not text)";
  return Quoted(text.value);
}

std::string ShownTime(const FileTime& time) {
  if (!time.present) return "-";
  const std::string iso = IsoTime(time);
  return iso.empty() ? "(not a time)" : iso;
}

std::string JsonOrNull(const std::string& text) { return text.empty() ? "null" : JsonString(text); }

// A CSV field written at the end of line, quoted where it holds a separator, a quote or a
// line end.
void AppendCsvField(std::string& line, const std::string& text) {
  if (std::none_of(text.begin(), text.end(), [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; })) {
    line += text;
    return;
  }
  line += '"';
  for (const char c : text) {
    if (c == '"') line += '"';
    line += c;
  }
  line += '"';
}

std::string CsvField(const std::string& text) {
  std::string field;
  AppendCsvField(field, text);
  return field;
}

// Rows are printed before the longest is known, so the columns have fixed widths: every
// status, a date, a saver of 24 characters, a Windows account name (20 at most) and a time.
class TextPrinter : public StampsPrinter {
 public:
  explicit TextPrinter(bool summary) : summary_(summary) {}
  std::string Begin() override { return std::string(); }
  std::string BeforeRow(bool first) const override {
    return first ? Line({"STATUS", "STAMP DATE", "STAMP SAVER", "PREVIOUS", "LAST SAVED BY", "LAST SAVED", "CREATED",
                         "FILE"},
                        columnWidths_)
                 : std::string();
  }
  std::string Row(const SceneStamp& stamp) const override {
    const std::string saved = !stamp.saveDate.empty() ? stamp.saveDate : ShownText(stamp.savedAs);
    return Line({StampStatusName(stamp.status), saved, ShownText(stamp.saver), ShownText(stamp.previous),
                 ShownText(stamp.lastSavedBy), ShownTime(stamp.lastSaved), ShownTime(stamp.created),
                 Escaped(Utf8ToWide(stamp.file)) + (stamp.note.empty() ? "" : "  (" + stamp.note + ")")},
                columnWidths_);
  }
  std::string End(const StampTally& tally) override {
    std::string text = std::to_string(tally.Files()) + (tally.Files() == 1 ? " file" : " files");
    if (tally.Folders() > 0)
      text += " and " + std::to_string(tally.Folders()) + (tally.Folders() == 1 ? " folder" : " folders");
    text += ": " + Counts(tally, false) + "\n";
    if (!summary_) return text;
    // The savers are all known here, so their table fits its widest cells.
    std::vector<std::vector<std::string>> savers = {{"FILES", "LATEST", "SOURCE", "SAVER", "LATEST FILE"}};
    for (const SaverSummary& saver : tally.Savers())
      savers.push_back({std::to_string(saver.files), saver.latest.empty() ? "-" : saver.LatestDate(),
                        SaverSourceName(saver.source), Quoted(saver.saver),
                        saver.latestFile.empty() ? "-" : Escaped(Utf8ToWide(saver.latestFile))});
    std::vector<std::size_t> widths(savers.front().size(), 0);
    for (const auto& row : savers)
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
    text += "\nLast saved by:\n";
    for (const auto& row : savers) text += Line(row, widths);
    return text;
  }

 private:
  const std::vector<std::size_t> columnWidths_ = {22, 12, 26, 26, 22, 20, 20, 0};
  const bool summary_;
};

class JsonPrinter : public StampsPrinter {
 public:
  explicit JsonPrinter(bool summary) : summary_(summary) {}
  std::string Begin() override { return "{\n  \"schema\": \"hublet-stamps/1\",\n  \"files\": ["; }
  std::string BeforeRow(bool first) const override { return first ? "" : ","; }
  std::string Row(const SceneStamp& stamp) const override {
    std::string json = "\n    {";
    const char* separator = "";
    std::string value;
    for (const StampField& field : StampFields()) {
      const bool present = field.value(stamp, value);
      json += separator + JsonString(field.jsonName) + ": " + (present ? JsonString(value) : "null");
      separator = ", ";
    }
    return json + "}";
  }
  std::string End(const StampTally& tally) override {
    std::string json = std::string(tally.Rows() == 0 ? "" : "\n  ") + "],\n  \"counts\": {" + Counts(tally, true) + "}";
    if (summary_) {
      json += ",\n  \"savers\": [";
      const std::vector<SaverSummary> savers = tally.Savers();
      for (std::size_t i = 0; i < savers.size(); ++i)
        json += std::string(i == 0 ? "" : ",") + "\n    {\"saver\": " + JsonString(WideToUtf8(savers[i].saver)) +
                ", \"source\": " + JsonString(SaverSourceName(savers[i].source)) + ", \"files\": " +
                std::to_string(savers[i].files) + ", \"latestSaveDate\": " + JsonOrNull(savers[i].LatestDate()) +
                ", \"latestFile\": " + JsonOrNull(savers[i].latestFile) + "}";
      json += std::string(savers.empty() ? "" : "\n  ") + "]";
    }
    return json + "\n}\n";
  }

 private:
  const bool summary_;
};

// With the summary, the CSV is the summary's table instead of the files'.
class CsvPrinter : public StampsPrinter {
 public:
  explicit CsvPrinter(bool summary) : summary_(summary) {}
  std::string Begin() override {
    if (summary_) return std::string();
    std::string header;
    for (const StampField& field : StampFields()) header += std::string(header.empty() ? "" : ",") + field.csvName;
    return header + "\r\n";
  }
  std::string BeforeRow(bool) const override { return std::string(); }
  std::string Row(const SceneStamp& stamp) const override {
    if (summary_) return std::string();
    std::string line, value;
    line.reserve(256);
    for (const StampField& field : StampFields()) {
      if (&field != &StampFields().front()) line += ',';
      field.value(stamp, value);
      AppendCsvField(line, value);
    }
    line += "\r\n";
    return line;
  }
  std::string End(const StampTally& tally) override {
    if (!summary_) return std::string();
    // The source last, so that readers of the columns before find them where they were.
    std::string csv = "saver,files,latest_save_date,latest_file,source\r\n";
    for (const SaverSummary& saver : tally.Savers())
      csv += CsvField(WideToUtf8(saver.saver)) + "," + std::to_string(saver.files) + "," + saver.LatestDate() + "," +
             CsvField(saver.latestFile) + "," + SaverSourceName(saver.source) + "\r\n";
    return csv;
  }

 private:
  const bool summary_;
};

}  // namespace

std::unique_ptr<StampsPrinter> MakeStampsPrinter(const std::string& format, bool summary) {
  if (format == "text") return std::unique_ptr<StampsPrinter>(new TextPrinter(summary));
  if (format == "json") return std::unique_ptr<StampsPrinter>(new JsonPrinter(summary));
  if (format == "csv") return std::unique_ptr<StampsPrinter>(new CsvPrinter(summary));
  return nullptr;
}

}  // namespace tool
}  // namespace hublet
