// Layout and contents of the tables behind a transform object.
#pragma once

#include "transform/fft_sines.h"
#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT::fft {

// Real transforms from this order on fold with products of two tables.
constexpr int kFirstFoldedOrder = 5;  // shorter real transforms have direct kernels
constexpr int kLongFoldOrder = 21;
constexpr int kFineFold = 1024;

// Bytes of all tables of an order; the same walk that buildTables makes.
template <class T>
std::size_t tableBytes(FftKind kind, int order);

// Order of the sine table that buildTables reads.
template <class T>
int sineOrder(FftKind kind, int order);

// Fills the tables from memory (64-byte aligned) on and stores their addresses.
template <class T>
void buildTables(FftObject<T>& spec, FftKind kind, void* memory, const Sines<T>& sines);

}  // namespace zep::ZEP_VARIANT::fft
