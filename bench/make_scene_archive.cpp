// Writes a studio's archive of scene files for measuring hublet stamps against other
// readers: COUNT files in folders of 100 (shot000/scene00000.max, ...), laid out as 3ds Max
// 2017 to 2023 lays them out (MaxSceneFile: the summary information with a thumbnail and
// 3ds Max's own properties beside the plug-in's stamp, after the scene's body). Their zero
// blocks are left as holes, so the archive takes little disk.
// Usage: make_scene_archive FOLDER COUNT
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/archive_scenes.h"

int main(int argc, char** argv) {
  if (argc != 3 || std::atoi(argv[2]) <= 0) {
    std::fprintf(stderr, "usage: make_scene_archive FOLDER COUNT\n");
    return 2;
  }
  const std::string folder = argv[1];
  const int count = std::atoi(argv[2]);
  if (::mkdir(folder.c_str(), 0755) != 0 && errno != EEXIST) {
    std::perror(folder.c_str());
    return 1;
  }
  for (int i = 0; i < count; ++i) {
    char shot[32], name[32];
    std::snprintf(shot, sizeof shot, "/shot%03d", i / 100);
    std::snprintf(name, sizeof name, "/scene%05d.max", i);
    if (i % 100 == 0 && ::mkdir((folder + shot).c_str(), 0755) != 0 && errno != EEXIST) {
      std::perror((folder + shot).c_str());
      return 1;
    }
    if (!hublet::bench::WriteSparse(folder + shot + name, hublet::bench::ArchiveScene(i))) {
      std::perror((folder + shot + name).c_str());
      return 1;
    }
  }
  return 0;
}
