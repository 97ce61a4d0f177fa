#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "platform/ini_document.h"
#include "platform/ini_text.h"

namespace hublet {
namespace {

// The header names noted and the entries remembered per section: far more than any
// preference file holds. Longer names are neither noted nor remembered.
const std::size_t kNotedSections = 1024;
const std::size_t kRememberedEntries = 1024;
const std::size_t kLongestRemembered = 256;
// Key lengths below this are told apart by one bit each before a name is folded.
const std::size_t kLengthBits = 64;
const std::size_t kNowhere = static_cast<std::size_t>(-1);
const IniFound kNoEntry = {0, false, {0, 0}};

// FNV-1a over the folded units, spread over the slots with the record's scope.
const std::uint64_t kHashBasis = 0xCBF29CE484222325ull;
const std::uint64_t kHashPrime = 0x100000001B3ull;

// Appends source[begin, begin + length) folded to units; answers its name there.
template <class Source>
IniName AppendFolded(std::wstring& units, const Source& source, std::size_t begin, std::size_t length) {
  IniName name{kHashBasis, units.size(), length};
  for (std::size_t i = 0; i < length; ++i) {
    const wchar_t folded = FoldAscii(static_cast<std::uint32_t>(source[begin + i]));
    units.push_back(folded);
    name.hash = (name.hash ^ static_cast<std::uint32_t>(folded)) * kHashPrime;
  }
  return name;
}

// A caller's argument as Windows takes it: a C string with its outer spaces (only
// spaces, not tabs) ignored.
IniName AppendArgument(std::wstring& units, const std::wstring& argument) {
  std::size_t end = 0;
  while (end < argument.size() && argument[end] != L'\0') ++end;
  std::size_t begin = 0;
  while (begin < end && argument[begin] == L' ') ++begin;
  while (end > begin && argument[end - 1] == L' ') --end;
  return AppendFolded(units, argument, begin, end - begin);
}

bool Same(const std::wstring& units, const IniName& name, const std::wstring& recordUnits, const IniName& record) {
  return name.hash == record.hash && name.length == record.length &&
         std::wmemcmp(units.data() + name.at, recordUnits.data() + record.at, name.length) == 0;
}

// Open addressing: a slot holds a record's index + 1, or 0 when free. The slot for a
// hash: the one holding the record that matches, or the free one where it would go.
template <class Matches>
std::size_t Probe(const std::vector<std::uint32_t>& slots, std::uint64_t hash, const Matches& matches) {
  const std::size_t mask = slots.size() - 1;
  for (std::size_t i = static_cast<std::size_t>(hash) & mask;; i = (i + 1) & mask)
    if (slots[i] == 0 || matches(slots[i] - 1)) return i;
}

std::size_t FreeSlot(const std::vector<std::uint32_t>& slots, std::uint64_t hash) {
  return Probe(slots, hash, [](std::size_t) { return false; });
}

// Room for one more record, at most half the slots taken. The first room is enough for a
// preference file.
template <class Records, class HashOf>
void Reserve(std::vector<std::uint32_t>& slots, Records& records, const HashOf& hashOf) {
  if ((records.size() + 1) * 2 <= slots.size()) return;
  slots.assign(std::max<std::size_t>(128, slots.size() * 2), 0);
  records.reserve(slots.size() / 2);
  for (std::size_t r = 0; r < records.size(); ++r)
    slots[FreeSlot(slots, hashOf(records[r]))] = static_cast<std::uint32_t>(r + 1);
}

// A name's hash spread over the slots, with the section an entry is in.
std::uint64_t SlotHash(const IniName& name, std::size_t scope) {
  std::uint64_t spread = (name.hash ^ (scope * 0x9E3779B97F4A7C15ull)) * 0xBF58476D1CE4E5B9ull;
  return spread ^ spread >> 31;
}

}  // namespace

IniLookupMemo::IniLookupMemo()
    : discovered_{0, 0}, indexing_(true), indexed_(0), soughtSections_(0), longestSoughtSection_(0) {}

// ---- Records ----

std::size_t IniLookupMemo::FindSection(const std::wstring& units, const IniName& name) const {
  if (sectionSlots_.empty()) return kNowhere;
  const std::uint32_t slot = sectionSlots_[Probe(sectionSlots_, SlotHash(name, 0), [&](std::size_t s) {
    return Same(units, name, names_, sections_[s].name);
  })];
  return slot == 0 ? kNowhere : slot - 1;
}

std::size_t IniLookupMemo::FindEntry(std::size_t section, const std::wstring& units, const IniName& name) const {
  if (entrySlots_.empty()) return kNowhere;
  const std::uint32_t slot = entrySlots_[Probe(entrySlots_, SlotHash(name, section + 1), [&](std::size_t e) {
    return entries_[e].section == section && Same(units, name, names_, entries_[e].name);
  })];
  return slot == 0 ? kNowhere : slot - 1;
}

// A name not yet in the table; its units are the last of names_.
std::size_t IniLookupMemo::AddSection(const IniName& name, State state, IniCursor body) {
  Reserve(sectionSlots_, sections_, [](const Section& s) { return SlotHash(s.name, 0); });
  sections_.push_back(Section{name, state, body, false, true, false, kRememberedEntries, 0, 0, 0});
  sectionSlots_[FreeSlot(sectionSlots_, SlotHash(name, 0))] = static_cast<std::uint32_t>(sections_.size());
  return sections_.size() - 1;
}

std::size_t IniLookupMemo::AddEntry(std::size_t section, const IniName& name, const IniFound& found, bool sought) {
  Reserve(entrySlots_, entries_, [](const Entry& e) { return SlotHash(e.name, e.section + 1); });
  entries_.push_back(Entry{section, name, found, sought});
  entrySlots_[FreeSlot(entrySlots_, SlotHash(name, section + 1))] = static_cast<std::uint32_t>(entries_.size());
  return entries_.size() - 1;
}

IniName IniLookupMemo::Fold(const IniUnits& text, IniSpan span) {
  return AppendFolded(names_, text, span.begin, span.length);
}

IniName IniLookupMemo::Stash(const IniName& asked) {
  const std::size_t at = names_.size();
  names_.append(asked_, asked.at, asked.length);
  return IniName{asked.hash, at, asked.length};
}

// ---- Lookups ----

IniFound IniLookupMemo::Find(const IniUnits& text, const std::wstring& section, const std::wstring& key) {
  asked_.clear();
  const IniName sectionName = AppendArgument(asked_, section);
  const Asked asked{sectionName, AppendArgument(asked_, key)};
  const IniFound* found = Answer(text, asked);
  if (found == nullptr) {
    Learn(text, &asked, 1);
    found = Answer(text, asked);
  }
  return *found;
}

void IniLookupMemo::Prepare(const IniUnits& text,
                            const std::vector<std::pair<std::wstring, std::wstring>>& lookups) {
  asked_.clear();
  std::vector<Asked> asked;
  asked.reserve(lookups.size());
  for (const auto& lookup : lookups) {
    const IniName section = AppendArgument(asked_, lookup.first);
    asked.push_back(Asked{section, AppendArgument(asked_, lookup.second)});
  }
  Learn(text, asked.data(), asked.size());
}

// What is known of the lookup, or null when a walk must tell.
const IniFound* IniLookupMemo::Answer(const IniUnits& text, const Asked& asked) const {
  const std::size_t s = FindSection(asked_, asked.section);
  // A name without a record has no header, once every header is noted.
  if (s == kNowhere) return indexing_ && discovered_.at >= text.size ? &kNoEntry : nullptr;
  const Section& section = sections_[s];
  if (section.state != State::Found) return section.state == State::Missing ? &kNoEntry : nullptr;
  const std::size_t e = FindEntry(s, asked_, asked.key);
  if (e != kNowhere) return entries_[e].sought ? nullptr : &entries_[e].found;
  return section.remembered && section.whole ? &kNoEntry : nullptr;
}

// Records the lookups not yet answered as sought, then walks: from where headers stopped
// being noted to the sections not yet met, and the body of every other section asked.
void IniLookupMemo::Learn(const IniUnits& text, const Asked* asked, std::size_t count) {
  if (names_.empty()) names_.reserve(1024);  // the names of a preference file
  walking_.clear();
  soughtEntries_.clear();
  longestSoughtSection_ = 0;
  for (const Asked* a = asked; a != asked + count; ++a) {
    if (Answer(text, *a) != nullptr) continue;
    const IniName sectionName = Stash(a->section);
    std::size_t s = FindSection(names_, sectionName);
    if (s != kNowhere) {
      names_.resize(sectionName.at);
    } else {
      s = AddSection(sectionName, State::Sought, IniCursor{kNowhere, 0});
      ++soughtSections_;
      longestSoughtSection_ = std::max(longestSoughtSection_, sectionName.length);
    }
    const IniName key = Stash(a->key);
    if (FindEntry(s, names_, key) != kNowhere) {
      names_.resize(key.at);  // the same lookup twice
    } else {
      soughtEntries_.push_back(AddEntry(s, key, kNoEntry, true));
      Section& section = sections_[s];
      ++section.sought;
      if (key.length < kLengthBits) section.soughtLengths |= std::uint64_t(1) << key.length;
      section.longestSought = std::max(section.longestSought, key.length);
    }
    if (!sections_[s].walk) {
      sections_[s].walk = true;
      walking_.push_back(s);
    }
  }
  if (soughtSections_ > 0) Discover(text);
  for (const std::size_t s : walking_) {
    if (!sections_[s].walk) continue;
    if (sections_[s].state == State::Found)
      WalkBody(text, s);
    else
      EndWalk(s);
  }
  // A key sought and not met has no entry.
  for (const std::size_t e : soughtEntries_) entries_[e].sought = false;
}

// ---- Walks ----

// Walks on from discovered_ until every section sought is met, walking each one's body
// when it is; headers are noted on the way while indexing_.
void IniLookupMemo::Discover(const IniUnits& text) {
  IniCursor cursor = discovered_;
  for (;;) {
    std::size_t met = kNowhere;
    WalkLines(text, cursor, [&](std::size_t begin, std::size_t end, std::size_t number) {
      std::size_t first = begin;
      while (first < end && IsBlank(text[first])) ++first;
      if (first == end || text[first] != u'[') return true;
      if (soughtSections_ == 0) return false;
      bool seenHeader = true;
      met = OnHeader(text, ClassifyLine(text, begin, end, number, seenHeader), IniCursor{begin, number - 1},
                     IniCursor{text.NextLine(end), number});
      return met == kNowhere;
    });
    if (met == kNowhere) break;
    cursor = WalkBody(text, met);
  }
  if (indexing_) discovered_ = cursor;
  if (cursor.at < text.size) return;
  for (const std::size_t s : walking_)
    if (sections_[s].state == State::Sought) sections_[s].state = State::Missing;
  soughtSections_ = 0;
}

// Notes a header, and answers the section sought that it is the first of, if any.
std::size_t IniLookupMemo::OnHeader(const IniUnits& text, const IniLine& header, IniCursor at, IniCursor body) {
  const std::size_t length = header.name.length;
  const bool notable = indexing_ && length <= kLongestRemembered && indexed_ < kNotedSections;
  if (notable || length <= longestSoughtSection_) {
    const IniName name = Fold(text, header.name);
    const std::size_t s = FindSection(names_, name);
    if (s == kNowhere && notable) {
      AddSection(name, State::Found, body);
      ++indexed_;
      return kNowhere;
    }
    names_.resize(name.at);
    if (s != kNowhere && sections_[s].state == State::Sought) {
      sections_[s].state = State::Found;
      sections_[s].body = body;
      --soughtSections_;
      return s;
    }
    if (s != kNowhere) return kNowhere;  // a later header of a name met before
  }
  // A header not noted: the headers from here on are searched, not noted.
  if (indexing_) discovered_ = at;
  indexing_ = false;
  return kNowhere;
}

// Walks a section's body, remembering it or finding its keys sought; answers where the
// next header is, or the text's end.
IniCursor IniLookupMemo::WalkBody(const IniUnits& text, std::size_t section) {
  IniCursor cursor = sections_[section].body;
  bool seenHeader = true;
  WalkLines(text, cursor, [&](std::size_t begin, std::size_t end, std::size_t number) {
    const IniLine line = ClassifyLine(text, begin, end, number, seenHeader);
    if (line.kind == IniLineKind::Header) return false;
    if (line.kind == IniLineKind::Entry) Remember(text, section, line);
    return true;
  });
  EndWalk(section);
  return cursor;
}

void IniLookupMemo::Remember(const IniUnits& text, std::size_t s, const IniLine& entry) {
  Section& section = sections_[s];
  const std::size_t length = entry.name.length;
  bool remember = false;
  if (!section.remembered) {
    // Every entry takes room, a repeated name too, so that a section of a million
    // repeats is not folded a million times.
    remember = section.room > 0 && length <= kLongestRemembered;
    if (!remember) section.whole = false;
    if (section.room > 0) --section.room;
  }
  const bool sought = section.sought > 0 && length <= section.longestSought &&
                      (length >= kLengthBits || (section.soughtLengths >> length & 1) != 0);
  if (!remember && !sought) return;
  const IniName name = Fold(text, entry.name);
  const std::size_t e = FindEntry(s, names_, name);
  const IniFound found{entry.number, entry.hasEquals, entry.value};
  if (e == kNowhere && remember) {
    AddEntry(s, name, found, false);
    return;
  }
  names_.resize(name.at);
  // The first entry of a name is the one read; later ones are not looked for.
  if (e != kNowhere && entries_[e].sought) {
    entries_[e].found = found;
    entries_[e].sought = false;
    --section.sought;
  }
}

void IniLookupMemo::EndWalk(std::size_t s) {
  Section& section = sections_[s];
  section.remembered = section.remembered || section.state == State::Found;
  section.walk = false;
  section.sought = 0;
  section.soughtLengths = 0;
  section.longestSought = 0;
}

}  // namespace hublet
