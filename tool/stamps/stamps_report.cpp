#include "tool/stamps/stamps_report.h"

#include <algorithm>
#include <map>

#include "platform/wide_text.h"
#include "tool/common/json_writer.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

// Per saver: how many files they saved last, and the latest of those saves.
struct SaverSummary {
  std::wstring saver;
  int files = 0;
  std::string latestDate;
  std::string latestFile;
};

std::vector<SaverSummary> Summarise(const std::vector<SceneStamp>& stamps) {
  std::map<std::wstring, SaverSummary> bySaver;
  for (const SceneStamp& stamp : stamps) {
    if (!stamp.saver.isText) continue;
    SaverSummary& summary = bySaver[stamp.saver.value];
    summary.saver = stamp.saver.value;
    ++summary.files;
    if (stamp.saveDate > summary.latestDate) {
      summary.latestDate = stamp.saveDate;
      summary.latestFile = stamp.file;
    }
  }
  std::vector<SaverSummary> summaries;
  for (const auto& entry : bySaver) summaries.push_back(entry.second);
  return summaries;
}

std::string Counts(const std::vector<SceneStamp>& stamps, bool json) {
  int counts[kStampStatusCount] = {};
  for (const SceneStamp& stamp : stamps) ++counts[static_cast<int>(stamp.status)];
  std::string text;
  for (int i = 0; i < kStampStatusCount; ++i) {
    if (!text.empty()) text += ", ";
    const std::string name = StampStatusName(static_cast<StampStatus>(i));
    text += json ? JsonString(name) + ": " + std::to_string(counts[i]) : std::to_string(counts[i]) + " " + name;
  }
  return text;
}

// Columns count characters, not bytes: UTF-8 continuation bytes take no room.
std::size_t Width(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text) width += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return width;
}

std::string ShownText(const SummaryText& text) {
  if (!text.present) return "-";
  if (!text.isText) return "(not text)";
  return Quoted(text.value);
}

std::string Table(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.front().size(), 0);
  for (const auto& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i + 1 < row.size(); ++i) line += row[i] + std::string(widths[i] - Width(row[i]) + 2, ' ');
    text += line + row.back() + "\n";
  }
  return text;
}

std::string JsonText(const SummaryText& text) {
  return text.isText ? JsonString(WideToUtf8(text.value)) : "null";
}

std::string JsonOrNull(const std::string& text) { return text.empty() ? "null" : JsonString(text); }

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string CsvText(const SummaryText& text) { return text.isText ? CsvField(WideToUtf8(text.value)) : std::string(); }

}  // namespace

std::string StampsText(const std::vector<SceneStamp>& stamps, bool summary) {
  std::vector<std::vector<std::string>> rows = {{"STATUS", "SAVED", "SAVER", "PREVIOUS", "FILE"}};
  for (const SceneStamp& stamp : stamps) {
    const std::string saved = !stamp.saveDate.empty() ? stamp.saveDate : ShownText(stamp.savedAs);
    rows.push_back({StampStatusName(stamp.status), saved, ShownText(stamp.saver), ShownText(stamp.previous),
                    Escaped(Utf8ToWide(stamp.file)) + (stamp.note.empty() ? "" : "  (" + stamp.note + ")")});
  }
  std::string text = stamps.empty() ? std::string() : Table(rows);
  text += std::to_string(stamps.size()) + (stamps.size() == 1 ? " file: " : " files: ") + Counts(stamps, false) + "\n";
  if (summary) {
    std::vector<std::vector<std::string>> savers = {{"FILES", "LATEST", "SAVER", "LATEST FILE"}};
    for (const SaverSummary& saver : Summarise(stamps))
      savers.push_back({std::to_string(saver.files), saver.latestDate.empty() ? "-" : saver.latestDate,
                        Quoted(saver.saver),
                        saver.latestFile.empty() ? "-" : Escaped(Utf8ToWide(saver.latestFile))});
    text += "\nLast saved by:\n" + Table(savers);
  }
  return text;
}

std::string StampsJson(const std::vector<SceneStamp>& stamps, bool summary) {
  std::string json = "{\n  \"schema\": \"hublet-stamps/1\",\n  \"files\": [";
  for (std::size_t i = 0; i < stamps.size(); ++i) {
    const SceneStamp& stamp = stamps[i];
    json += std::string(i == 0 ? "" : ",") + "\n    {\"file\": " + JsonString(stamp.file) +
            ", \"status\": " + JsonString(StampStatusName(stamp.status)) + ", \"saver\": " + JsonText(stamp.saver) +
            ", \"previousSaver\": " + JsonText(stamp.previous) + ", \"savedAs\": " + JsonText(stamp.savedAs) +
            ", \"saveDate\": " + JsonOrNull(stamp.saveDate) + ", \"note\": " + JsonOrNull(stamp.note) + "}";
  }
  json += std::string(stamps.empty() ? "" : "\n  ") + "],\n  \"counts\": {" + Counts(stamps, true) + "}";
  if (summary) {
    json += ",\n  \"savers\": [";
    const std::vector<SaverSummary> savers = Summarise(stamps);
    for (std::size_t i = 0; i < savers.size(); ++i)
      json += std::string(i == 0 ? "" : ",") + "\n    {\"saver\": " + JsonString(WideToUtf8(savers[i].saver)) +
              ", \"files\": " + std::to_string(savers[i].files) + ", \"latestSaveDate\": " +
              JsonOrNull(savers[i].latestDate) + ", \"latestFile\": " + JsonOrNull(savers[i].latestFile) + "}";
    json += std::string(savers.empty() ? "" : "\n  ") + "]";
  }
  return json + "\n}\n";
}

std::string StampsCsv(const std::vector<SceneStamp>& stamps, bool summary) {
  std::string csv;
  if (summary) {
    csv = "saver,files,latest_save_date,latest_file\r\n";
    for (const SaverSummary& saver : Summarise(stamps))
      csv += CsvField(WideToUtf8(saver.saver)) + "," + std::to_string(saver.files) + "," + saver.latestDate + "," +
             CsvField(saver.latestFile) + "\r\n";
    return csv;
  }
  csv = "file,status,saver,previous_saver,saved_as,save_date,note\r\n";
  for (const SceneStamp& stamp : stamps)
    csv += CsvField(stamp.file) + "," + StampStatusName(stamp.status) + "," + CsvText(stamp.saver) + "," +
           CsvText(stamp.previous) + "," + CsvText(stamp.savedAs) + "," + stamp.saveDate + "," +
           CsvField(stamp.note) + "\r\n";
  return csv;
}

}  // namespace tool
}  // namespace hublet
