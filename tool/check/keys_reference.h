#pragma once
// The preference-file reference, generated from the preference table so that it is never
// written twice.
#include <string>

namespace hublet {
namespace tool {

std::string KeysMarkdown();
std::string KeysText();

}  // namespace tool
}  // namespace hublet
