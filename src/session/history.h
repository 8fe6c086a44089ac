#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "session/change.h"

namespace graphize {

/// The way back, and forth again, over everything that happens to a document.
///
/// A command that is more than passing is one entry, whatever happened in it; moves of the same
/// points by keys, one after the other, are one entry. Modes, a refresh, the
/// selection in the list and what has no step in the recipe pass: Undo goes through them. After an
/// Undo they are dropped, so that Redo finds the document as Undo has left it.
///
/// Where the memory for it is not there, whatever is asked changes nothing: a commit is made up for
/// by the next one.
class History {
 public:
  /// `budget`, in bytes, is for everything but one picture; the oldest entries beyond it go.
  explicit History(std::size_t budget = std::size_t{256} << 20) : budget_(budget) {}

  /// The document as it is has no past.
  void Begin(Workspace& ws);
  /// After every command, also when it failed: keeps what has become different, and says in
  /// `ws.undoNames` what can be undone. While the pen is down, nothing: its way is one change.
  void Commit(Workspace& ws);
  /// After a command that could not be done: the document is as it was at the last commit.
  void TakeBack(Workspace& ws);
  /// End what a press on the picture has begun, then take back the last entry or do it again. False
  /// when there is none. The recipe goes along. While points or a rectangle are dragged, Undo gives
  /// that up and takes nothing back.
  bool Undo(Workspace& ws);
  bool Redo(Workspace& ws);

  /// What has become different since the last time that this was asked.
  DocumentDelta TakeDelta() { return std::exchange(delta_, {}); }

  /// Entries that can be undone, and bytes that count against the budget.
  std::size_t Size() const { return undo_.size(); }
  std::size_t Bytes() const { return bytes_ + sharedBytes_; }

 private:
  struct Entry {
    std::string Name;
    PointSet Nudged;            // by keys alone
    std::list<Change> Changes;  // the passing ones behind the first
  };
  enum class Way { Back, Forth };

  /// What has become different since the last time, and its name unless it is passing. False where
  /// nothing has.
  bool FindChange(Workspace& ws, Change& change, std::string& name);
  /// The points that were active before another curve became so, as they were at the last commit.
  std::shared_ptr<const PointStore> LeftPoints(const Workspace& ws) const;
  void NoteTheRest(Workspace& ws);
  void AddPassing(std::list<Change>& from);
  /// Makes the change a part of the last entry when both move the same points by keys.
  bool Join(const Change& change, const PointSet& nudged);
  void Apply(Workspace& ws, Change& change, Way way);
  void Apply(Workspace& ws, Entry& entry, Way way);
  bool Apply(Workspace& ws, Way way);
  void DropPassing(Workspace& ws);
  void DropOldest();
  void CountShared();
  void Forget(const Entry& entry);
  void ShowNames(Workspace& ws) const;

  std::size_t budget_;
  // The document as it was at the last commit.
  RecordCopies records_;
  ArrayCopies arrays_;
  ListPage page_;
  std::int16_t captured_ = 0;  // points
  int recipe_ = 0;             // its number
  std::size_t steps_ = 0;      // in it
  DocumentDelta delta_;
  // Lists: what moves from one to another needs no memory for that.
  std::list<Entry> undo_;
  std::list<Entry> redo_;
  std::list<Change> passing_;  // while there is something to redo
  std::size_t bytes_ = 0;
  std::size_t sharedBytes_ = 0;  // of all whole pictures but the largest, and curves put away
  bool sharedChanged_ = false;   // and they are to be counted anew
};

}  // namespace graphize
