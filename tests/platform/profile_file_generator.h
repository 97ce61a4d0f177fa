#pragma once
// Random preference files of the kinds a user, an editor or a broken tool leaves behind,
// each with the lookups to ask of it. File `index` of `seed` is the same on every build
// and every run, so a failure is replayed from those two numbers.
#include <cstdint>
#include <string>
#include <vector>

namespace hublet {
namespace testing {

struct ProfileQuery {
  bool isInt;  // GetPrivateProfileIntW, else GetPrivateProfileStringW
  std::wstring section;
  std::wstring key;
  std::int32_t intDefault;
  std::wstring textDefault;
};

struct GeneratedProfile {
  std::string bytes;
  std::vector<ProfileQuery> queries;
};

GeneratedProfile GenerateProfile(std::uint64_t seed, std::uint64_t index);

}  // namespace testing
}  // namespace hublet
