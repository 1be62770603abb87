#pragma once

// A generator of random numbers of 15 bits, the same on every machine, with one state for the process: it
// starts at 1 and goes on from call to call. In place of std::rand(), which is wider on most machines: angles
// made from 15 bits would be thousands of turns, and walks along them would not end. Any thread.
namespace LegacyRandom {

constexpr int largest = 32767;

// Sets the state.
void seed(unsigned state);
// The next number, 0 .. largest.
int next();

} // namespace LegacyRandom
