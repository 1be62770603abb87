#pragma once

// Whether a sanitizer is at work: it takes much memory of its own, keeps what is freed, and ends the program
// where memory is exhausted.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
