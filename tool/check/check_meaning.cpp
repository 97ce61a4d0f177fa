// What the values will make the plug-in do, where that differs from what the text says:
// numbers the reader cuts short or wraps, switches that stay off, codes the host does not
// know, and keys that are read but have no effect.
//
// How a value's text reads is reported whether or not its stage runs, as a companion tool
// can switch a stage on at run time; what the value then does is reported only for a
// stage that runs, and a key of a stage that does not run gets a note.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cwchar>

#include "host/host_constants.h"
#include "host/sim/transcript.h"
#include "platform/wide_text.h"
#include "tool/check/check_jobs.h"
#include "tool/common/host_codes.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

// Gammas outside this range are no display or file gamma anyone means.
constexpr float kLowestPlausibleGamma = 0.2f;
constexpr float kHighestPlausibleGamma = 5.0f;

bool IsSwitch(const PreferenceKey& key) {
  return key.test == SwitchTest::ExactlyOne || key.test == SwitchTest::NonZero;
}

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool IsHexDigit(wchar_t c) { return IsDigit(c) || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F'); }
bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

// Whether the text after the number the reader takes goes on with more of it: a decimal
// point or comma, an exponent or an upper-case base prefix, each followed by digits, or
// digits after a blank ("29.97", "2,2", "1e3", "0X74", "2 5"). The plug-in then reads
// another number than the one written. A unit, a word or a comment after the number
// ("25fps", "25 fps", "2.2 ; linear") reads as meant.
bool ContinuesTheNumber(const std::wstring& rest) {
  std::size_t i = 0;
  bool hex = false;
  if (rest.empty()) return false;
  const wchar_t first = rest[0];
  if (first == L'.' || first == L',' || first == L'O' || first == L'B') {
    i = 1;
  } else if (first == L'X') {
    i = 1;
    hex = true;
  } else if (first == L'e' || first == L'E') {
    i = rest.size() > 1 && (rest[1] == L'+' || rest[1] == L'-') ? 2 : 1;
  } else {
    while (i < rest.size() && IsBlank(rest[i])) ++i;
    if (i == 0) return false;
  }
  return i < rest.size() && (hex ? IsHexDigit(rest[i]) : IsDigit(rest[i]));
}

class MeaningChecker {
 public:
  explicit MeaningChecker(CheckContext& context) : context_(context), s_(context.settings) {}

  void Run() {
    const SettingValue* persp = nullptr;
    const SettingValue* ortho = nullptr;
    for (const SettingValue& value : context_.report.settings) {
      const PreferenceKey& key = *value.key;
      if (key.intField == &HubletSettings::forcePersp) persp = &value;
      if (key.intField == &HubletSettings::forceOrtho) ortho = &value;
      bool formReported = false;
      if (key.kind != KeyKind::GammaText && value.line != 0) formReported = CheckNumberForm(value);
      if (key.test == SwitchTest::ExactlyOne && value.intValue != 0 && value.intValue != 1 && !formReported)
        Add(value, Severity::Error, "switch-not-one",
            value.name + " = " + std::to_string(value.intValue) +
                ": the plug-in acts on this switch only when it is exactly 1, so it stays off");
      if (key.kind == KeyKind::GammaText && value.line != 0) CheckGamma(value);
      if (key.intField == &HubletSettings::viewCount) CheckViewCount(value);
      if (key.intField == &HubletSettings::viewLayout) CheckLayout(value);
      if (key.intField == &HubletSettings::frameRate) CheckFrameRate(value);
      if (key.kind == KeyKind::PerView) CheckViewport(value);
      if (value.line != 0) CheckEffect(value);
    }
    if (persp != nullptr && ortho != nullptr && persp->intValue == 1 && ortho->intValue == 1) {
      const SettingValue& later = persp->line > ortho->line ? *persp : *ortho;
      Add(later, Severity::Warning, "force-both",
          persp->name + " and " + ortho->name +
              " are both 1: a perspective view is first made orthographic and then, at the next "
              "redraw, a camera view");
    }
  }

 private:
  void Add(const SettingValue& value, Severity severity, const char* code, std::string message) {
    context_.Add(value.line, severity, code, std::move(message), Utf8ToWide(value.section), Utf8ToWide(value.name));
  }

  int SetUpViewports() const { return std::max(0, std::min(s_.viewCount, kStoredViewCount)); }
  bool LayoutRuns() const { return context_.report.layoutStage; }

  // Whole numbers: what the reader makes of the text. True when it reported something.
  bool CheckNumberForm(const SettingValue& value) {
    const std::wstring section = Utf8ToWide(value.section);
    const std::wstring name = Utf8ToWide(value.name);
    const std::wstring text = context_.document.LookupText(section, name, std::wstring());
    const PreferenceKey& key = *value.key;
    const std::string written = value.name + " = " + Quoted(text);
    if (text.empty()) {
      Add(value, Severity::Warning, "empty-value",
          written + " is empty: the reader answers the default, " + DefaultText(key));
      return true;
    }
    const ProfileIntReading r = ReadProfileInt(text);
    if (!r.anyDigit) {
      Add(value, IsSwitch(key) ? Severity::Error : Severity::Warning, "not-an-integer",
          written + " holds no number: the plug-in reads 0");
      return true;
    }
    const std::wstring rest = text.substr(r.end);
    if (ContinuesTheNumber(rest)) {
      std::string why = "the reader stops at " + Quoted(rest.substr(0, 1));
      if (rest[0] == L'X' || rest[0] == L'B' || rest[0] == L'O') why += " (only a lower-case 0x, 0o or 0b is a prefix)";
      Add(value, Severity::Error, "number-trailing-text",
          written + ": " + why + ", so the plug-in reads " + std::to_string(value.intValue) +
              ", not the number written");
      return true;
    }
    if (r.wraps) {
      Add(value, Severity::Error, "integer-wraps",
          written + " does not fit a 32-bit number: it wraps, and the plug-in stores " + std::to_string(value.intValue));
      return true;
    }
    return false;
  }

  void CheckGamma(const SettingValue& value) {
    const std::wstring text = Utf8ToWide(value.text);
    wchar_t* end = nullptr;
    std::wcstod(text.c_str(), &end);
    const bool whole = !text.empty() && end == text.c_str() + text.size();
    if (whole && std::isfinite(value.floatValue)) {
      if (context_.report.gammaStage &&
          (value.floatValue < kLowestPlausibleGamma || value.floatValue > kHighestPlausibleGamma))
        Add(value, Severity::Warning, "gamma-range",
            value.name + " = " + Quoted(text) + " is outside " + FormatFloat(kLowestPlausibleGamma) + " to " +
                FormatFloat(kHighestPlausibleGamma) + ", where display and file gammas lie; the plug-in applies it as it stands");
      return;
    }
    std::string message = value.name + " = " + Quoted(text);
    const bool otherNumber = end != text.c_str() && ContinuesTheNumber(end);
    if (end == text.c_str())
      message += " is not a number";
    else if (otherNumber)
      message += ": the reading stops at " + Quoted(std::wstring(end, 1)) + ", before the rest of the number";
    else if (!whole)
      message += " is not only a number: the reading stops before the end";
    else
      message += " is not a finite number";
    message += "; the plug-in applies " + FormatFloat(value.floatValue);
    Add(value, otherNumber ? Severity::Error : Severity::Warning, "gamma-not-a-number", message);
  }

  void CheckViewCount(const SettingValue& value) {
    if (!LayoutRuns() || (value.intValue >= 0 && value.intValue <= kStoredViewCount)) return;
    const std::string what = value.intValue < 0 ? "no viewport is set up"
                                                : "only the " + std::to_string(kStoredViewCount) +
                                                      " viewports with stored keys are set up";
    Add(value, Severity::Warning, "view-count-range",
        value.name + " = " + std::to_string(value.intValue) + " is outside 0 to " + std::to_string(kStoredViewCount) +
            ": " + what);
  }

  void CheckLayout(const SettingValue& value) {
    if (!LayoutRuns() || HostCodeName(kViewportLayouts, value.intValue) != nullptr) return;
    Add(value, Severity::Warning, "layout-unknown",
        value.name + " = " + std::to_string(value.intValue) + (value.line == 0 ? " (the default)" : "") +
            " is not a viewport layout of 3ds Max 2017 (see the preference reference): the host gets it as it stands");
  }

  void CheckFrameRate(const SettingValue& value) {
    if (!context_.report.frameRateStage || value.intValue > 0) return;
    Add(value, Severity::Warning, "frame-rate",
        std::string(value.line == 0 ? "FPS is missing" : value.name + " = " + std::to_string(value.intValue)) +
            " while the frame-rate stage runs: every pass sets the frame rate to " + std::to_string(value.intValue));
  }

  // Per-viewport values of viewports that the pass sets up.
  void CheckViewport(const SettingValue& value) {
    if (!LayoutRuns() || value.viewIndex >= SetUpViewports()) return;
    const PreferenceKey& key = *value.key;
    if (key.viewField == &HubletSettings::viewType && HostCodeName(kViewTypes, value.intValue) == nullptr)
      Add(value, Severity::Warning, "view-type-range",
          value.name + " = " + std::to_string(value.intValue) + " is not a view type (0 to " +
              std::to_string(host::kViewTypeCount - 1) +
              "): no view command runs, and the viewport keeps its current view for the rest of its setup");
    if (key.viewField == &HubletSettings::viewStyle && s_.useDisplayModes != 0 &&
        HostCodeName(kShadingStyles, value.intValue) == nullptr)
      Add(value, Severity::Warning, "style-unknown",
          value.name + " = " + std::to_string(value.intValue) +
              " is not a shading style of 3ds Max 2017 (0 to 14): the viewport gets it as it stands");
  }

  // A key in the file that the plug-in reads but that changes nothing.
  void CheckEffect(const SettingValue& value) {
    const PreferenceKey& key = *value.key;
    const char* gate = nullptr;
    if (key.when == ReadWhen::LayoutStage && !LayoutRuns()) gate = "USE_VPL is 0, so the layout stage does not run";
    if (key.when == ReadWhen::GammaStage && !context_.report.gammaStage) gate = "USE_GAMMA is 0, so the gamma stage does not run";
    if (key.when == ReadWhen::FrameRateStage && !context_.report.frameRateStage)
      gate = "USE_FPS is 0, so the frame-rate stage does not run";
    if (gate != nullptr) {
      Add(value, Severity::Note, "no-effect", value.name + " has no effect: " + gate);
      return;
    }
    if (key.kind != KeyKind::PerView || !LayoutRuns()) return;
    if (value.viewIndex >= SetUpViewports()) {
      Add(value, Severity::Note, "no-effect",
          value.name + " has no effect: NUMVP = " + std::to_string(s_.viewCount) + " sets up " +
              std::to_string(SetUpViewports()) + " viewport" + (SetUpViewports() == 1 ? "" : "s"));
    } else if (key.viewField != &HubletSettings::viewType && s_.useDisplayModes == 0) {
      Add(value, Severity::Note, "no-effect",
          value.name + " has no effect: USE_DR is 0, so the built-in shading and edged faces apply");
    }
  }

  CheckContext& context_;
  const HubletSettings& s_;
};

}  // namespace

void CheckMeaning(CheckContext& context) { MeaningChecker(context).Run(); }

}  // namespace tool
}  // namespace hublet
