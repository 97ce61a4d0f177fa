#pragma once
// The scene files the stamps benchmarks read: laid out as 3ds Max 2017 to 2023 writes them
// (MaxSceneFile: a summary set of code page 65001 made large by a thumbnail, 3ds Max's own
// properties beside the plug-in's stamp, after the scene's body; 0.3 to 1.1 MB), written
// with their zero blocks left as holes so that an archive of them takes little disk.
#include <string>

#include "tests/support/compound_builder.h"

namespace hublet {
namespace bench {

// The scene number index of an archive: its saver, thumbnail and size vary with it; one in
// ten is stale.
testing::CompoundImage ArchiveScene(int index);

// Writes image to path, its all-zero 4 KiB blocks (and its zero end) left unwritten.
bool WriteSparse(const std::string& path, const testing::CompoundImage& image);

}  // namespace bench
}  // namespace hublet
