#pragma once

// How long a test waits for what must come: an answer, a line, a state. A
// wait ends as soon as it is met, so this only decides how long a failing
// test takes to say so; it is generous because a loaded 2-core machine, or
// an emulator, makes every step many times slower. Waits that a test makes
// on purpose, for something that must not come, are short and their own.
constexpr int kPatienceMs = 120000;
