#pragma once

#include <QString>

// The layout of SLIC files. A chunk is a header of 24 bytes - tag (four UTF-16 units), identity and size
// (unsigned 64 bits each; the size counts the header too) - and a body. All numbers are little-endian.
//
//     SLIC: one NAME, every FRAG, every CONT      NAME: UTF-16 units without terminator
//     FRAG: one NAME, every SEGM                  POIN: x, y and z as 64-bit floating point numbers
//     SEGM: one NAME, every POIN                  FRRF: the identity of a FRAG
//     CONT: one NAME, every FRRF
namespace SlicChunk {

constexpr quint64 headerSize = 24;
constexpr quint64 pointSize = headerSize + 24;
constexpr quint64 referenceSize = headerSize + 8;

constexpr quint64 noIdentity = 0;
// Points bear the text "NOID" where other chunks have a number.
constexpr quint64 pointIdentity = 0x0044'0049'004F'004E;

} // namespace SlicChunk
