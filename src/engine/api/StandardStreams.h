// The standard streams as whoever started the program left them: closed, or pipes whose other end goes away.
#pragma once

namespace qm {

// Opens those that are closed on nothing, so that no file of the program's own takes their place and is written into.
// The first call of main().
void openStandardStreams();

// A pipe that nobody reads any more is an error of its writer, and does not end the program.
void outliveBrokenPipes();

}  // namespace qm
