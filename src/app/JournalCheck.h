#pragma once
// A journal is run only when every step in it is one that this program's own plans could have written:
// anyone who can write the user's files can write the journal, so it is checked against what the item
// table, the settings table and the program's own keys allow before any of it runs.
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "apply/Journal.h"
#include "system/Environment.h"

namespace vx {

struct JournalAllowList {
  std::set<std::string> values;   // lower-case "key\nvalue" that steps may set or delete
  std::set<std::string> keys;     // lower-case keys that steps may create, delete or put back whole
  std::set<std::string> anyValue; // lower-case keys whose values of any name steps may set or delete
  std::set<std::string> folders;  // lower-case folders that steps may make or remove
  // System parameter actions with the size of the buffer each takes (0: none; kTextBuffer: a path).
  std::map<UINT, size_t> parameters;
  std::set<std::tuple<UINT, WPARAM, LPARAM>> broadcasts;
  static constexpr size_t kTextBuffer = static_cast<size_t>(-1);
};

// Everything the Apply and rebuild plans can write in this environment, collected by building those
// plans from the item table and the settings table with every item changed and every switch both ways.
JournalAllowList BuildJournalAllowList(const Environment& env);

// Why the record cannot be run ("" when every step of it, its undo and its plan, is allowed).
std::string CheckJournal(const JournalRecord& record, const JournalAllowList& allow);

// True when running the record's steps would write keys kept for every user of the computer.
bool WritesMachineWide(const Plan& plan);

}  // namespace vx
