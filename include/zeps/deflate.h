/** @file
 * Resumable decoding of raw Deflate streams (RFC 1951), block by block.
 *
 * The caller owns the loop: it asks for the type of the next block, calls the decoder of that type
 * until the block has ended, and asks again. Every decoder stops wherever input or room runs out
 * and goes on from there in its next call. No zlib or gzip container is read and no checksum is
 * computed.
 *
 * Three things beside the calls themselves make such a loop decode every stream of RFC 1951; the
 * program below, `examples/inflate.c`, has them:
 * - **Behind a stored block** the history may lack bytes. Whole bytes that the bit buffer holds
 *   when the block begins go to the output, but not into the history, and a later match that
 *   reaches back to them from another call would copy older data. It is so when, over the whole
 *   block, the destination has advanced further than the source, and only then. At the end of such
 *   a block the bit buffer is empty; unless the block was the last one, the caller enters the last
 *   32 KiB of its output again, as a stored block made up for the purpose whose output is thrown
 *   away.
 * - **Room for a stored block**: 3 bytes or more when it begins. Of a block shorter than the bytes
 *   held, the surplus is written too and then taken back, and must not have been used in between.
 * - **Bytes before the input.** The source pointer may move back over bytes of an earlier call, by
 *   8 at most, counted from where that call's input began. No byte there is read by that call; but
 *   the pointer, and the next call, start there. So the last 8 bytes of the input before are to
 *   stand in front of each new piece, as below, or the caller continues its input that many bytes
 *   earlier.
 *
 * @code
 * // Decompresses a file that holds one raw Deflate stream (RFC 1951): inflate INPUT OUTPUT
 * #include <stdio.h>
 * #include <string.h>
 * #include <zeps.h>
 *
 * #ifndef PIECE
 * #define PIECE 4096  // bytes read or written at once; 16 or more
 * #endif
 * #define BACK 8         // so far the decoder may step back in its input
 * #define HISTORY 32768  // so far a match may reach back in the output
 *
 * static Zep8u input[BACK + PIECE];      // the bytes before the piece stand in front of it
 * static Zep8u output[HISTORY + PIECE];  // what was written last stands in front of the next piece
 *
 * // A stored block has brought bytes into the output that the decoder's own history lacks: enters
 * // the output again, as a stored block that is written over itself.
 * static ZepStatus enterHistory(const Zep8u* end, ZepLZ77State* state) {
 *     static Zep8u block[5 + HISTORY] = {0x00, 0x00, 0x80, 0xFF, 0x7F};  // LEN and its complement
 *     Zep8u *src = block, *dst = block + 5;
 *     Zep32s srcLen = (Zep32s)sizeof block, dstLen = HISTORY, type;
 *     memcpy(dst, end - HISTORY, HISTORY);
 *     zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state);
 *     return zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state);
 * }
 *
 * // Null, or what went wrong.
 * static const char* inflate(FILE* in, FILE* out, ZepLZ77State* state) {
 *     Zep8u *src = input + BACK, *dst = output + HISTORY;
 *     Zep32s srcLen = 0, dstLen = PIECE, ahead = 0;
 *     double bytesRead = 0, bytesWritten = 0;
 *     ZepStatus status;
 *     do {
 *         Zep32s type = -1;
 *         status = zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state);
 *         if (status == zepStsNoErr && type == 0) {
 *             status = zepsDecodeLZ77FixedHuffFull_8u(&src, &srcLen, &dst, &dstLen, NULL, state);
 *         } else if (status == zepStsNoErr && type == 1) {
 *             status = zepsDecodeLZ77DynamicHuffFull_8u(&src, &srcLen, &dst, &dstLen, NULL, state);
 *         } else if (status == zepStsNoErr && type == 2 && dstLen < BACK) {
 *             status = zepStsDstSizeLessExpected;  // the block may take back what it has written
 *         } else if (status == zepStsNoErr && type == 2) {
 *             ahead += dstLen - srcLen;
 *             status = zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state);
 *             ahead -= dstLen - srcLen;
 *             if (status == zepStsNoErr) {  // the block has ended, and is not the last
 *                 if (ahead > 0) status = enterHistory(dst, state);  // more came out than went in
 *                 ahead = 0;
 *             }
 *         } else if (status == zepStsNoErr) {
 *             return "corrupt: reserved block type";
 *         }
 *         if (status == zepStsSrcSizeLessExpected) {  // all input is used
 *             memmove(input, src - BACK, BACK);
 *             src = input + BACK;
 *             srcLen = (Zep32s)fread(src, 1, PIECE, in);
 *             if (srcLen == 0) return "ends too early, or cannot be read";
 *             bytesRead += srcLen;
 *         }
 *         if (status == zepStsDstSizeLessExpected || status == zepStsStreamEnd) {
 *             const size_t made = (size_t)(PIECE - dstLen);
 *             bytesWritten += (double)made;
 *             if (bytesWritten > 1032 * bytesRead) return "corrupt: codes of no bits";
 *             if (fwrite(output + HISTORY, 1, made, out) != made) return "cannot be written";
 *             memmove(output, dst - HISTORY, HISTORY);
 *             dst = output + HISTORY;
 *             dstLen = PIECE;
 *         }
 *     } while (status >= 0 && status != zepStsStreamEnd);
 *     return status < 0 ? "corrupt" : NULL;
 * }
 *
 * int main(int argc, char** argv) {
 *     FILE* in = argc == 3 ? fopen(argv[1], "rb") : NULL;
 *     FILE* out = in != NULL ? fopen(argv[2], "wb") : NULL;
 *     ZepLZ77State* state = NULL;
 *     const char* wrong = "usage: inflate INPUT OUTPUT, both files that can be opened";
 *     if (out != NULL && zepsDecodeLZ77InitAlloc_8u(0, &state) == zepStsNoErr)
 *         wrong = inflate(in, out, state);
 *     zepsLZ77Free_8u(state);
 *     if (out != NULL && fclose(out) != 0 && wrong == NULL) wrong = "cannot be written";
 *     if (in != NULL) fclose(in);
 *     if (wrong != NULL) fprintf(stderr, "inflate: %s\n", wrong);
 *     return wrong != NULL;
 * }
 * @endcode
 *
 * What all decoding functions share:
 * - Pointers and lengths are passed by address and brought up to date on every return except from
 *   the checks at entry: a pointer stands behind the last byte used, a length tells what is left.
 * - Statuses: zepStsNoErr, the block has ended and was not the last; zepStsSrcSizeLessExpected
 *   (32), input ran out, call the same function with more: all input has been taken, none is left
 *   over, and what the decoder could not use yet it keeps; zepStsDstSizeLessExpected (33), output
 *   is full, call the same function with new room; zepStsStreamEnd (34), the last block has ended;
 *   zepStsSizeErr, the stream is corrupt (or a length is negative); zepStsErr, this function cannot
 *   continue from where the decoder stands, nothing is consumed.
 * - Output already made is valid on every status. The history of 32 KiB that matches refer to is
 *   kept in the state, so each call may write anywhere. A match that reaches back beyond the start
 *   of the stream is not an error: it yields what the history holds, zeros after initialisation.
 * - Input and output may have any alignment; they must not overlap each other, except in the stored
 *   decoder, which then copies byte by byte in rising order.
 * - No read outside the source, no write outside the destination, and a return after a bounded
 *   time, whatever the input. Bytes of the destination behind the updated pointer are left alone
 *   or, inside the room given, scratch.
 * - All variants write the same bytes and return the same statuses, pointers and lengths.
 * - One state belongs to one thread at a time; different states may run in parallel. Nothing is
 *   allocated after initialisation.
 */
#ifndef ZEPS_DEFLATE_H
#define ZEPS_DEFLATE_H

#include "../zepcore.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Decoder of one Deflate stream, from zepsDecodeLZ77InitAlloc_8u. */
typedef struct ZepLZ77State ZepLZ77State;

/**
 * Creates a decoder that stands before the first block of a stream, with an empty (zeroed) history.
 *
 * There is no reset: a new stream needs a new state. The object holds pointers into itself and must
 * not be copied.
 *
 * @param initArgument  kept in the state, without effect on decoding.
 * @param ppState       takes the state, to be released by zepsLZ77Free_8u.
 * @return              zepStsNullPtrErr (ppState), zepStsMemAllocErr, tested in this order; else
 *                      zepStsNoErr. On an error nothing is written.
 */
ZEP_API ZepStatus zepsDecodeLZ77InitAlloc_8u(Zep32s initArgument, ZepLZ77State** ppState);

/** Releases a state of zepsDecodeLZ77InitAlloc_8u. Null is ignored. */
ZEP_API void zepsLZ77Free_8u(ZepLZ77State* pState);

/**
 * Reads the three bits of the next block header.
 *
 * In the midst of a block it consumes nothing and reports that block's type again, so asking twice
 * is harmless. The reserved type (BTYPE 11) is swallowed: zepStsNoErr, with *pBlockType as it was;
 * presetting *pBlockType to -1 tells it apart.
 *
 * @param ppSrc       input; at most one byte is taken.
 * @param pSrcLen     bytes at *ppSrc.
 * @param pBlockType  takes 0 fixed Huffman, 1 dynamic Huffman, 2 stored (not the numbers of the
 *                    stream).
 * @param pState      decoder.
 * @return            zepStsNullPtrErr (any argument or *ppSrc), zepStsSrcSizeLessExpected, tested
 *                    in this order; else zepStsNoErr.
 */
ZEP_API ZepStatus zepsDecodeLZ77GetBlockType_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep32s* pBlockType,
                                                ZepLZ77State* pState);

/**
 * Keeps a number of the caller's in the state. It has no effect on decoding and restarts nothing.
 *
 * @param value   any.
 * @param pState  decoder; not checked for null.
 * @return        zepStsNoErr.
 */
ZEP_API ZepStatus zepsDecodeLZ77SetStatus_8u(Zep32s value, ZepLZ77State* pState);

/**
 * Decodes a stored block, or as much of it as input and room allow.
 *
 * Bytes of the block that the decoder already holds in its bit buffer, left there by a Huffman
 * block before this one, go to the output but not into the history, so a later match that reaches
 * back to them across calls differs from RFC 1951 unless the caller restores the history as
 * described at the top of this file. When the block is shorter than the bytes held, the surplus
 * bytes, 3 at most, are written too, never beyond the room, and then both pointers move back over
 * them, the source pointer possibly over bytes of an earlier call.
 *
 * A last block that is empty does not return what the bit buffer holds: up to 3 bytes behind the
 * stream stay there, unused. Behind any other last block *ppSrc stands at the first byte after the
 * stream.
 *
 * @param ppSrc    input.
 * @param pSrcLen  bytes at *ppSrc; 0 or less: none.
 * @param ppDst    output.
 * @param pDstLen  room at *ppDst in bytes; less than 0: none.
 * @param pState   decoder.
 * @return         zepStsNullPtrErr (any argument, *ppSrc or *ppDst), zepStsDstSizeLessExpected (no
 *                 room, even for an empty block), zepStsErr (the decoder does not stand in a stored
 *                 block), zepStsSizeErr (LEN and NLEN disagree; repeated by every further call),
 *                 tested in this order; zepStsSrcSizeLessExpected, zepStsDstSizeLessExpected,
 *                 zepStsStreamEnd, zepStsNoErr as described at the top of this file.
 */
ZEP_API ZepStatus zepsDecodeLZ77StoredBlock_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                               Zep32s* pDstLen, ZepLZ77State* pState);

/**
 * Decodes a block with dynamic Huffman codes, or as much of it as input and room allow; never goes
 * past its end.
 *
 * Between two blocks it reads the block header itself, so zepsDecodeLZ77GetBlockType_8u may be left
 * out.
 *
 * - A symbol is started only while there is room, the end of block too: when a block fills the
 *   output exactly, its end is reported by the next call, which needs room for at least one byte.
 * - zepStsDstSizeLessExpected with the input used up and a whole byte still in the bit buffer
 *   returns that one byte to the source: *pSrcLen is 1, so a loop that ends on an empty input does
 *   not stop too early.
 * - zepStsStreamEnd returns all whole bytes behind the stream to the source: *ppSrc stands at the
 *   first byte after the stream. Both returns may move the pointer back over bytes of an earlier
 *   call, which asks of the caller what is said at the top of this file.
 * - The end of another block returns nothing: bytes read beyond it stay in the bit buffer.
 * - The sets of code lengths are not validated. A code that stands for nothing decodes as the byte
 *   0 and consumes no bits, until the output is full; a distance code that stands for nothing gives
 *   zepStsSizeErr. Neither is said before the input in sight rules out every other code. Of an
 *   over-subscribed set the codes that do not fit stand for nothing. Counts up to 288 and 32 are
 *   accepted; the symbols 286, 287, 30 and 31 stand for nothing. A repeat of the previous code
 *   length in first place repeats 0.
 * - While code lengths are read, fewer than 14 bits of input in sight give
 *   zepStsSrcSizeLessExpected.
 * - A repeat past the last code length gives zepStsSizeErr, again in every further call.
 *
 * @param ppSrc     input; *ppSrc is not checked for null.
 * @param pSrcLen   bytes at *ppSrc.
 * @param ppDst     output; *ppDst is not checked for null.
 * @param pDstLen   room at *ppDst in bytes.
 * @param reserved  ignored.
 * @param pState    decoder.
 * @return          zepStsNullPtrErr (an argument other than reserved), zepStsSizeErr (a negative
 *                  length), zepStsDstSizeLessExpected (no room), zepStsErr (the decoder stands in a
 *                  block of another type, or the next block is one), tested in this order; else as
 *                  described at the top of this file.
 */
ZEP_API ZepStatus zepsDecodeLZ77DynamicHuffFull_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                                   Zep32s* pDstLen, void* reserved,
                                                   ZepLZ77State* pState);

/**
 * Decodes a block with the fixed Huffman code, or as much of it as input and room allow; never goes
 * past its end.
 *
 * Arguments, returned bytes and statuses are those of zepsDecodeLZ77DynamicHuffFull_8u. The symbols
 * 286, 287 and the distance symbols 30, 31 give zepStsSizeErr, the symbol being consumed.
 *
 * @param ppSrc     input; *ppSrc is not checked for null.
 * @param pSrcLen   bytes at *ppSrc.
 * @param ppDst     output; *ppDst is not checked for null.
 * @param pDstLen   room at *ppDst in bytes.
 * @param reserved  ignored.
 * @param pState    decoder.
 * @return          as zepsDecodeLZ77DynamicHuffFull_8u.
 */
ZEP_API ZepStatus zepsDecodeLZ77FixedHuffFull_8u(Zep8u** ppSrc, Zep32s* pSrcLen, Zep8u** ppDst,
                                                 Zep32s* pDstLen, void* reserved,
                                                 ZepLZ77State* pState);

#ifdef __cplusplus
}
#endif

#endif
