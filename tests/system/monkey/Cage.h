// Keeps a program from writing outside one folder, whatever it is told to by keys and clicks.
#pragma once

#include <string>

// From here on this process and those it starts write in the folder and to devices only. Call it in the child, before
// exec. False where the kernel cannot do it (Linux before 5.19).
bool mayWriteOnlyIn(const std::string& folder);
bool canKeepToAFolder();
