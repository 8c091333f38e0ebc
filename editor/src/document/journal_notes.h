// Notes and marks of a document as JSON, for its journal.
#pragma once

#include <nlohmann/json.hpp>

#include "editor/document/marks.h"

namespace brindlehum {

// Their texts may hold any bytes.
nlohmann::json toJson(const WavNotes& notes);
// Of a line with `notes`; without, as older journals are, there are none. Throws what JSON throws.
WavNotes notesOf(const nlohmann::json& line);

// Points by name and place; what belongs to them stands in the notes.
nlohmann::json toJson(const Marks& marks);
Marks marksOf(const nlohmann::json& line, const WavNotes& notes);

}  // namespace brindlehum
