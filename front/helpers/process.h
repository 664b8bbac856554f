#pragma once

// What a program does to its own process: first of all, and last.

// Takes nothing from the caller that could hurt: a closed standard stream is /dev/null, so that no file gets
// its number, new files are writable by their owner alone, programs are found in the system's folders, and a
// pipe or a file that takes no more is an error of the write.
void StartProcess();

// Writes what standard output still holds back. False, told unless its reader has left, when something that
// was printed could not be written.
[[nodiscard]] bool FlushOutput();
