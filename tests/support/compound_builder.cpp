#include "tests/support/compound_builder.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace hublet {
namespace testing {
namespace {

const std::uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF, kFatSector = 0xFFFFFFFD, kDifatSector = 0xFFFFFFFC,
                    kNone = 0xFFFFFFFF;

void Append16(std::string& bytes, std::uint16_t value) {
  bytes += static_cast<char>(value & 0xFF);
  bytes += static_cast<char>(value >> 8);
}

}  // namespace

void Append32(std::string& bytes, std::uint32_t value) {
  Append16(bytes, static_cast<std::uint16_t>(value));
  Append16(bytes, static_cast<std::uint16_t>(value >> 16));
}

namespace {

std::uint64_t Units(std::uint64_t size, std::uint32_t unit) { return (size + unit - 1) / unit; }

// Sorted as the directory sorts: by length, then without case (ASCII is enough here).
bool NameBefore(const std::u16string& a, const std::u16string& b) {
  if (a.size() != b.size()) return a.size() < b.size();
  auto upper = [](char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; };
  for (std::size_t i = 0; i < a.size(); ++i)
    if (upper(a[i]) != upper(b[i])) return upper(a[i]) < upper(b[i]);
  return false;
}

struct Entry {
  std::u16string name;
  std::uint8_t type;
  std::uint32_t left = kNone, right = kNone, child = kNone, start = kEnd;
  std::uint64_t size = 0;
};

std::string EntryBytes(const Entry& entry) {
  std::string bytes;
  for (char16_t c : entry.name) Append16(bytes, c);
  bytes.resize(64, '\0');
  Append16(bytes, static_cast<std::uint16_t>(entry.name.empty() ? 0 : 2 * (entry.name.size() + 1)));
  bytes += static_cast<char>(entry.type);
  bytes += static_cast<char>(1);  // black
  Append32(bytes, entry.left);
  Append32(bytes, entry.right);
  Append32(bytes, entry.child);
  bytes.resize(116, '\0');
  Append32(bytes, entry.start);
  Append32(bytes, static_cast<std::uint32_t>(entry.size));
  Append32(bytes, static_cast<std::uint32_t>(entry.size >> 32));
  return bytes;
}

}  // namespace

std::size_t ImageBytes::ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  const std::string& bytes = image_.bytes;
  const std::size_t held =
      offset < bytes.size() ? std::min<std::size_t>(count, bytes.size() - static_cast<std::size_t>(offset)) : 0;
  if (held > 0) std::memcpy(out, bytes.data() + offset, held);
  std::memset(out + held, 0, count - held);
  return count;
}

void PutLe32(std::string& bytes, std::uint64_t offset, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes.at(static_cast<std::size_t>(offset) + i) = static_cast<char>(value >> (8 * i));
}

CompoundImage BuildCompoundFile(const std::vector<CompoundStream>& streams, std::uint32_t sectorSize) {
  CompoundImage image;
  image.sectorSize = sectorSize;
  const std::uint32_t perSector = sectorSize / 4;

  // Mini streams first, packed into the mini stream; then the regular ones.
  std::string miniStream;
  std::vector<std::uint32_t> miniFat;
  std::vector<std::uint64_t> sizes;
  for (const CompoundStream& stream : streams) {
    const std::uint64_t size = stream.bytes.size() + stream.zeroBytes;
    sizes.push_back(size);
    if (size >= 4096) {
      image.streamStarts.push_back(kEnd);
      continue;
    }
    const std::uint32_t first = static_cast<std::uint32_t>(miniFat.size());
    const std::uint32_t count = static_cast<std::uint32_t>(Units(size, 64));
    for (std::uint32_t i = 0; i < count; ++i) miniFat.push_back(i + 1 < count ? first + i + 1 : kEnd);
    image.streamStarts.push_back(count == 0 ? kEnd : first);
    miniStream += stream.bytes;
    miniStream.resize(miniFat.size() * 64, '\0');
  }

  // Sector plan: FAT, directory, mini FAT, mini stream, regular streams.
  const std::uint32_t entriesPerSector = sectorSize / 128;
  const std::uint32_t directorySectors = static_cast<std::uint32_t>(Units(streams.size() + 1, entriesPerSector));
  const std::uint32_t miniFatSectors = static_cast<std::uint32_t>(Units(miniFat.size() * 4, sectorSize));
  const std::uint32_t miniStreamSectors = static_cast<std::uint32_t>(Units(miniStream.size(), sectorSize));
  std::uint64_t regularSectors = 0;
  for (std::uint64_t size : sizes)
    if (size >= 4096) regularSectors += Units(size, sectorSize);
  const std::uint64_t other = directorySectors + miniFatSectors + miniStreamSectors + regularSectors;
  // FAT sectors past the header's 109 are listed in DIFAT sectors, which the FAT covers too.
  std::uint32_t fatSectors = 1, difatSectors = 0;
  for (;;) {
    difatSectors = fatSectors <= 109 ? 0 : static_cast<std::uint32_t>(Units(fatSectors - 109, perSector - 1));
    if (std::uint64_t{fatSectors} * perSector >= other + fatSectors + difatSectors) break;
    ++fatSectors;
  }

  std::vector<std::uint32_t> fat(std::size_t{fatSectors} * perSector, kFree);
  std::uint32_t next = 0;
  auto chain = [&](std::uint64_t count) {
    const std::uint32_t first = count == 0 ? kEnd : next;
    for (std::uint64_t i = 0; i < count; ++i, ++next) fat[next] = i + 1 < count ? next + 1 : kEnd;
    return first;
  };
  for (std::uint32_t i = 0; i < fatSectors; ++i) fat[next++] = kFatSector;
  const std::uint32_t firstDifatSector = next;
  for (std::uint32_t i = 0; i < difatSectors; ++i) fat[next++] = kDifatSector;
  image.fatSector = 0;
  image.directorySector = chain(directorySectors);
  const std::uint32_t miniFatStart = chain(miniFatSectors);
  const std::uint32_t miniStreamStart = chain(miniStreamSectors);
  for (std::size_t i = 0; i < streams.size(); ++i)
    if (sizes[i] >= 4096) image.streamStarts[i] = chain(Units(sizes[i], sectorSize));

  // The directory: the root, then the streams as a balanced search tree under it.
  std::vector<Entry> entries(1);
  entries[0].name = u"Root Entry";
  entries[0].type = 5;
  entries[0].start = miniStream.empty() ? kEnd : miniStreamStart;
  entries[0].size = miniStream.size();
  std::vector<std::uint32_t> order;
  for (std::size_t i = 0; i < streams.size(); ++i) {
    Entry entry;
    entry.name = streams[i].name;
    entry.type = 2;
    entry.start = image.streamStarts[i];
    entry.size = sizes[i];
    entries.push_back(entry);
    order.push_back(static_cast<std::uint32_t>(i + 1));
  }
  std::sort(order.begin(), order.end(),
            [&](std::uint32_t a, std::uint32_t b) { return NameBefore(entries[a].name, entries[b].name); });
  std::function<std::uint32_t(std::size_t, std::size_t)> tree = [&](std::size_t from, std::size_t to) {
    if (from >= to) return kNone;
    const std::size_t middle = (from + to) / 2;
    entries[order[middle]].left = tree(from, middle);
    entries[order[middle]].right = tree(middle + 1, to);
    return order[middle];
  };
  entries[0].child = tree(0, order.size());

  std::string& bytes = image.bytes;
  bytes = std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(16, '\0');
  Append16(bytes, 0x3E);
  Append16(bytes, sectorSize == 512 ? 3 : 4);
  Append16(bytes, 0xFFFE);
  Append16(bytes, sectorSize == 512 ? 9 : 12);
  Append16(bytes, 6);
  bytes.resize(40, '\0');
  Append32(bytes, sectorSize == 512 ? 0 : directorySectors);
  Append32(bytes, fatSectors);
  Append32(bytes, image.directorySector);
  Append32(bytes, 0);
  Append32(bytes, 4096);
  Append32(bytes, miniFatSectors == 0 ? kEnd : miniFatStart);
  Append32(bytes, miniFatSectors);
  Append32(bytes, difatSectors == 0 ? kEnd : firstDifatSector);
  Append32(bytes, difatSectors);
  for (std::uint32_t i = 0; i < 109; ++i) Append32(bytes, i < fatSectors ? i : kFree);
  bytes.resize(sectorSize, '\0');
  for (std::uint32_t value : fat) Append32(bytes, value);
  for (std::uint32_t d = 0; d < difatSectors; ++d) {
    for (std::uint32_t i = 0; i + 1 < perSector; ++i) {
      const std::uint64_t fatIndex = 109 + std::uint64_t{d} * (perSector - 1) + i;
      Append32(bytes, fatIndex < fatSectors ? static_cast<std::uint32_t>(fatIndex) : kFree);
    }
    Append32(bytes, d + 1 < difatSectors ? firstDifatSector + d + 1 : kEnd);
  }
  for (const Entry& entry : entries) bytes += EntryBytes(entry);
  if (!miniFat.empty()) {
    bytes.resize(image.SectorOffset(miniFatStart), '\0');
    for (std::uint32_t value : miniFat) Append32(bytes, value);
    bytes.resize(image.SectorOffset(miniStreamStart), '\0');
    bytes += miniStream;
  }
  for (std::size_t i = 0; i < streams.size(); ++i) {
    if (sizes[i] < 4096) continue;
    bytes.resize(image.SectorOffset(image.streamStarts[i]), '\0');
    bytes += streams[i].bytes;
  }
  image.size = image.SectorOffset(next);
  return image;
}

RawProperty Utf16Property(std::uint32_t id, const std::u16string& text) {
  std::string value;
  Append32(value, static_cast<std::uint32_t>(text.size() + 1));
  for (char16_t c : text) Append16(value, c);
  Append16(value, 0);
  return RawProperty{id, 31, value};
}

RawProperty CodePageProperty(std::uint32_t id, const std::string& bytes) {
  std::string value;
  Append32(value, static_cast<std::uint32_t>(bytes.size() + 1));
  value += bytes;
  value += '\0';
  return RawProperty{id, 30, value};
}

RawProperty CodePageIdProperty(std::uint16_t codePage) {
  std::string value;
  Append16(value, codePage);
  return RawProperty{1, 2, value};
}

RawProperty FileTimeProperty(std::uint32_t id, std::uint64_t ticks) {
  std::string value;
  Append32(value, static_cast<std::uint32_t>(ticks));
  Append32(value, static_cast<std::uint32_t>(ticks >> 32));
  return RawProperty{id, 64, value};
}

std::vector<RawProperty> MaxSummary(const std::vector<RawProperty>& stamp, std::uint32_t thumbnailBytes) {
  std::string locale, thumbnail;
  Append32(locale, 1033);
  Append32(thumbnail, thumbnailBytes + 4);
  Append32(thumbnail, 0xFFFFFFFF);  // a Windows clipboard format
  thumbnail += std::string(thumbnailBytes, '\x7F');
  std::vector<RawProperty> properties = {CodePageIdProperty(65001), RawProperty{0x80000000, 3, locale}};
  properties.insert(properties.end(), stamp.begin(), stamp.end());
  const std::vector<RawProperty> rest = {CodePageProperty(8, "adavis4"),
                                         CodePageProperty(9, "1"),
                                         // 2020-07-03 09:15:00 and 2023-11-14 17:40:12 UTC
                                         FileTimeProperty(12, 132382413000000000),
                                         FileTimeProperty(13, 133444572120000000),
                                         RawProperty{17, 71, thumbnail},
                                         CodePageProperty(35, "{5E4E1A2B-7C3D-4F60-8A91-0B2C3D4E5F60}"),
                                         CodePageProperty(37, "1.0")};
  properties.insert(properties.end(), rest.begin(), rest.end());
  return properties;
}

CompoundImage MaxSceneFile(const std::string& summary, std::uint64_t sceneBytes) {
  const std::vector<CompoundStream> streams = {
      {u"\x0005DocumentSummaryInformation", std::string(400, 'd'), 0},
      {u"ClassData", std::string(900, 'a'), 0},
      {u"ClassDirectory3", std::string(3000, 'k'), 0},
      {u"Config", std::string(2000, 'c'), 0},
      {u"DllDirectory", std::string(1500, 'l'), 0},
      {u"FileAssetMetaData3", std::string(1200, 'f'), 0},
      {u"SaveConfigData", std::string(300, 'v'), 0},
      {u"ScriptedCustAttribDefs", std::string(200, 'x'), 0},
      {u"VideoPostQueue", std::string(300, 'q'), 0},
      // The scene's body before the summary, which starts in the middle of the file.
      {u"Scene", std::string(4096, 's'), sceneBytes - 4096},
      {u"\x0005SummaryInformation", summary, 0},
  };
  return BuildCompoundFile(streams, 4096);
}

std::string SummarySet(const std::vector<RawProperty>& properties) {
  std::string set;
  Append16(set, 0xFFFE);
  Append16(set, 0);
  Append32(set, 0x00020006);
  set.resize(24, '\0');
  Append32(set, 1);
  set += std::string("\xE0\x85\x9F\xF2\xF9\x4F\x68\x10\xAB\x91\x08\x00\x2B\x27\xB3\xD9", 16);
  Append32(set, 48);
  std::string table, values;
  const std::uint32_t tableSize = 8 + 8 * static_cast<std::uint32_t>(properties.size());
  for (const RawProperty& property : properties) {
    Append32(table, property.id);
    Append32(table, tableSize + static_cast<std::uint32_t>(values.size()));
    Append32(values, property.type);
    values += property.value;
    values.resize((values.size() + 3) / 4 * 4, '\0');
  }
  Append32(set, tableSize + static_cast<std::uint32_t>(values.size()));
  Append32(set, static_cast<std::uint32_t>(properties.size()));
  return set + table + values;
}

}  // namespace testing
}  // namespace hublet
