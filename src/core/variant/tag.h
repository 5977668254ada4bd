// The variant that is being compiled, as a type and as text: namespace tag { struct m7; ... }.
#pragma once

#define ZEP_STRINGIFY_(x) #x
#define ZEP_STRINGIFY(x) ZEP_STRINGIFY_(x)

namespace zep::ZEP_VARIANT {

namespace tag {
struct m7;
struct u8;
struct n8;
struct y8;
struct e9;
}  // namespace tag

using VariantTag = tag::ZEP_VARIANT;
inline constexpr char kVariantName[] = ZEP_STRINGIFY(ZEP_VARIANT);

}  // namespace zep::ZEP_VARIANT
