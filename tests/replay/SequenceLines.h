// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What a random script is put together from. Each function adds a line or a few that belong
/// together, from what is open in the session now.
namespace quillabrae::replay {

class SequenceWriter;
class Session;

namespace lines {

void gesture(SequenceWriter& writer, Session& session);
void modifiers(SequenceWriter& writer, Session& session);
void pointer(SequenceWriter& writer, Session& session);
void key(SequenceWriter& writer, Session& session);
void escape(SequenceWriter& writer, Session& session);
void handle(SequenceWriter& writer, Session& session);
void type(SequenceWriter& writer, Session& session);
void tool(SequenceWriter& writer, Session& session);
void setting(SequenceWriter& writer, Session& session);
void view(SequenceWriter& writer, Session& session);
void keyboard(SequenceWriter& writer, Session& session);
void undo(SequenceWriter& writer, Session& session);
void redo(SequenceWriter& writer, Session& session);
void undoAndRedo(SequenceWriter& writer, Session& session);
void restoreHistory(SequenceWriter& writer, Session& session);
void layerCommand(SequenceWriter& writer, Session& session);
void layerPatch(SequenceWriter& writer, Session& session);
void selectionCommand(SequenceWriter& writer, Session& session);
void paste(SequenceWriter& writer, Session& session);
void transform(SequenceWriter& writer, Session& session);
void adjustment(SequenceWriter& writer, Session& session);
void generativeFill(SequenceWriter& writer, Session& session);
void newTab(SequenceWriter& writer, Session& session);
void otherTab(SequenceWriter& writer, Session& session);
void closeTab(SequenceWriter& writer, Session& session);
void picture(SequenceWriter& writer, Session& session);
void file(SequenceWriter& writer, Session& session);
void restart(SequenceWriter& writer, Session& session);

} // namespace lines
} // namespace quillabrae::replay
