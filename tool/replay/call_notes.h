#pragma once
// The annotation of a transcript line: the names of the host codes a call carries, so
// that "ExecuteCommand(138)" reads "top view" without the SDK at hand.
#include <string>

#include "host/sim/transcript.h"

namespace hublet {
namespace tool {

// The names of the codes among the call's arguments and answer, ", "-separated; empty
// when it carries none with a name.
std::string CallNote(const HostCall& call);

// A renderer the replay knows by name (V-Ray, V-Ray RT, the scanline renderer), or null.
const char* RendererName(ClassId id);

}  // namespace tool
}  // namespace hublet
