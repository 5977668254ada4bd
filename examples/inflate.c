// Decompresses a file that holds one raw Deflate stream (RFC 1951): inflate INPUT OUTPUT
#include <stdio.h>
#include <string.h>
#include <zeps.h>

#ifndef PIECE
#define PIECE 4096  // bytes read or written at once; 16 or more
#endif
#define BACK 8         // so far the decoder may step back in its input
#define HISTORY 32768  // so far a match may reach back in the output

static Zep8u input[BACK + PIECE];      // the bytes before the piece stand in front of it
static Zep8u output[HISTORY + PIECE];  // what was written last stands in front of the next piece

// A stored block has brought bytes into the output that the decoder's own history lacks: enters
// the output again, as a stored block that is written over itself.
static ZepStatus enterHistory(const Zep8u* end, ZepLZ77State* state) {
    static Zep8u block[5 + HISTORY] = {0x00, 0x00, 0x80, 0xFF, 0x7F};  // LEN and its complement
    Zep8u *src = block, *dst = block + 5;
    Zep32s srcLen = (Zep32s)sizeof block, dstLen = HISTORY, type;
    memcpy(dst, end - HISTORY, HISTORY);
    zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state);
    return zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state);
}

// Null, or what went wrong.
static const char* inflate(FILE* in, FILE* out, ZepLZ77State* state) {
    Zep8u *src = input + BACK, *dst = output + HISTORY;
    Zep32s srcLen = 0, dstLen = PIECE, ahead = 0;
    double bytesRead = 0, bytesWritten = 0;
    ZepStatus status;
    do {
        Zep32s type = -1;
        status = zepsDecodeLZ77GetBlockType_8u(&src, &srcLen, &type, state);
        if (status == zepStsNoErr && type == 0) {
            status = zepsDecodeLZ77FixedHuffFull_8u(&src, &srcLen, &dst, &dstLen, NULL, state);
        } else if (status == zepStsNoErr && type == 1) {
            status = zepsDecodeLZ77DynamicHuffFull_8u(&src, &srcLen, &dst, &dstLen, NULL, state);
        } else if (status == zepStsNoErr && type == 2 && dstLen < BACK) {
            status = zepStsDstSizeLessExpected;  // the block may take back what it has written
        } else if (status == zepStsNoErr && type == 2) {
            ahead += dstLen - srcLen;
            status = zepsDecodeLZ77StoredBlock_8u(&src, &srcLen, &dst, &dstLen, state);
            ahead -= dstLen - srcLen;
            if (status == zepStsNoErr) {  // the block has ended, and is not the last
                if (ahead > 0) status = enterHistory(dst, state);  // more came out than went in
                ahead = 0;
            }
        } else if (status == zepStsNoErr) {
            return "corrupt: reserved block type";
        }
        if (status == zepStsSrcSizeLessExpected) {  // all input is used
            memmove(input, src - BACK, BACK);
            src = input + BACK;
            srcLen = (Zep32s)fread(src, 1, PIECE, in);
            if (srcLen == 0) return "ends too early, or cannot be read";
            bytesRead += srcLen;
        }
        if (status == zepStsDstSizeLessExpected || status == zepStsStreamEnd) {
            const size_t made = (size_t)(PIECE - dstLen);
            bytesWritten += (double)made;
            if (bytesWritten > 1032 * bytesRead) return "corrupt: codes of no bits";
            if (fwrite(output + HISTORY, 1, made, out) != made) return "cannot be written";
            memmove(output, dst - HISTORY, HISTORY);
            dst = output + HISTORY;
            dstLen = PIECE;
        }
    } while (status >= 0 && status != zepStsStreamEnd);
    return status < 0 ? "corrupt" : NULL;
}

int main(int argc, char** argv) {
    FILE* in = argc == 3 ? fopen(argv[1], "rb") : NULL;
    FILE* out = in != NULL ? fopen(argv[2], "wb") : NULL;
    ZepLZ77State* state = NULL;
    const char* wrong = "usage: inflate INPUT OUTPUT, both files that can be opened";
    if (out != NULL && zepsDecodeLZ77InitAlloc_8u(0, &state) == zepStsNoErr)
        wrong = inflate(in, out, state);
    zepsLZ77Free_8u(state);
    if (out != NULL && fclose(out) != 0 && wrong == NULL) wrong = "cannot be written";
    if (in != NULL) fclose(in);
    if (wrong != NULL) fprintf(stderr, "inflate: %s\n", wrong);
    return wrong != NULL;
}
