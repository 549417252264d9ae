#pragma once

namespace quiv {

// What this process may do and take, whatever is in the file. Both end the process by an exception
// when the system refuses.

// Low priority, bounded memory and processor time, no files written, no core dumps with the user's
// pictures in them; ends with the process that started it. Before the file is opened.
void limitThisProcess();

// No descriptor can be opened from now on, so no second file and no connection either.
void forbidFurtherFiles();

} // namespace quiv
