// Layout and contents of the tables behind a transform object.
#pragma once

#include "transform/fft_sines.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT {

// Real transforms from this order on fold with products of two tables.
constexpr int kLongFoldOrder = 21;
constexpr int kFineFold = 1024;

// Bytes of all tables of an order; the same walk that buildTables makes.
std::size_t tableBytes(FftKind kind, int order);

// Order of the sine table that buildTables reads.
int sineOrder(FftKind kind, int order);

// Fills the tables from memory (32-byte aligned) on and stores their addresses.
void buildTables(FftObject& spec, FftKind kind, float* memory, const Sines& sines);

}  // namespace zep::ZEP_VARIANT
