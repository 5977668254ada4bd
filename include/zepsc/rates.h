/** @file
 * Rates of the speech coders.
 */
#ifndef ZEPSC_RATES_H
#define ZEPSC_RATES_H

/** Rate argument of the G.726 coder and of the G.728 codebook search. */
typedef enum ZepSpchBitRate {
    ZEP_SPCHBR_9600 = 10,  /**< 9.6 kbit/s, G.728 */
    ZEP_SPCHBR_12800 = 14, /**< 12.8 kbit/s, G.728 */
    ZEP_SPCHBR_16000 = 17, /**< 16 kbit/s, G.726 with 2 bits a sample and G.728 */
    ZEP_SPCHBR_24000 = 22, /**< 24 kbit/s, G.726 with 3 bits a sample */
    ZEP_SPCHBR_32000 = 23, /**< 32 kbit/s, G.726 with 4 bits a sample */
    ZEP_SPCHBR_40000 = 24  /**< 40 kbit/s, G.726 with 5 bits a sample */
} ZepSpchBitRate;

#endif
