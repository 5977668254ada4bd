/** @file
 * Status codes. 0 is success, a negative value an error, a positive value a warning.
 * zepGetStatusString gives the text of each.
 */
#ifndef ZEPSTATUS_H
#define ZEPSTATUS_H

/** What every primitive returns. The comment of a code is the message of its text. */
typedef enum ZepStatus {
    zepStsNotSupportedModeErr = -9999,     /**< The requested mode is not supported */
    zepStsCpuNotSupportedErr = -9998,      /**< The target cpu is not supported */
    zepStsDitherTypeErr = -224,            /**< Dither type is not supported */
    zepStsH264BufferFullErr = -223,        /**< H264: The buffer is too small for the bit stream */
    zepStsWrongAffinitySettingErr = -222,  /**< Thread affinity setting is wrong */
    zepStsLoadDynErr = -221,               /**< The dynamic library could not be loaded */
    zepStsPointAtInfinity = -220,          /**< The result is the point at infinity */
    zepStsI18nUnsupportedErr = -219,       /**< Internationalisation is not supported */
    zepStsI18nMsgCatalogOpenErr = -218,    /**< The message catalog could not be opened */
    zepStsI18nMsgCatalogCloseErr = -217,   /**< The message catalog could not be closed */
    zepStsUnknownStatusCodeErr = -216,     /**< Unknown Status Code */
    zepStsOFBSizeErr = -215,               /**< OFB: Size of the feedback is wrong */
    zepStsLzoBrokenStreamErr = -214,       /**< LZO: The compressed stream is broken */
    zepStsRoundModeNotSupportedErr = -213, /**< The rounding mode is not supported */
    zepStsDecimateFractionErr = -212,      /**< Decimation fraction is not supported */
    zepStsWeightErr = -211,                /**< Wrong value of the weight */
    zepStsQualityIndexErr = -210, /**< Quality index could not be calculated for this image */
    zepStsIIRPassbandRippleErr =
        -209, /**< IIR: Ripple in the pass band is less than or equal to zero */
    zepStsFilterFrequencyErr =
        -208, /**< Cut-off frequency of the filter is out of range: 0 < frequency < 0.5 */
    zepStsFIRGenOrderErr = -207,     /**< FIR: Order of the filter to be designed is out of range */
    zepStsIIRGenOrderErr = -206,     /**< IIR: Order of the filter to be designed is out of range */
    zepStsConvergeErr = -205,        /**< The iteration did not converge */
    zepStsSizeMatchMatrixErr = -204, /**< Sizes of the source matrices do not match the operation */
    zepStsCountMatrixErr = -203,     /**< Count of matrices is less than or equal to zero */
    zepStsRoiShiftMatrixErr =
        -202, /**< Shift of the region of interest is not a multiple of the element size */
    zepStsResizeNoOperationErr =
        -201, /**< One of the output dimensions is less than 1 pixel, nothing to resize */
    zepStsSrcDataErr = -200,        /**< The source buffer contains unsupported data */
    zepStsMaxLenHuffCodeErr = -199, /**< Huffman: Length of a code exceeds the allowed maximum */
    zepStsCodeLenTableErr = -198,   /**< Huffman: Table of code lengths is wrong */
    zepStsFreqTableErr = -197,      /**< Huffman: Table of frequencies is wrong */
    zepStsIncompleteContextErr =
        -196, /**< Cryptography: Preparation of the context has not been completed */
    zepStsSingularErr = -195, /**< The matrix is singular */
    zepStsSparseErr =
        -194, /**< Positions of the taps are not in ascending order, negative or repeated */
    zepStsBitOffsetErr = -193,        /**< Offset in bits is out of range */
    zepStsQPErr = -192,               /**< Quantisation parameter is out of range */
    zepStsVLCErr = -191,              /**< Illegal variable length code in the bit stream */
    zepStsRegExpOptionsErr = -190,    /**< RegExp: Options of the expression are wrong */
    zepStsRegExpErr = -189,           /**< RegExp: Structure of the expression is wrong */
    zepStsRegExpMatchLimitErr = -188, /**< RegExp: The limit of matches has been exceeded */
    zepStsRegExpQuantifierErr = -187, /**< RegExp: Quantifier is wrong */
    zepStsRegExpGroupingErr = -186,   /**< RegExp: Grouping is wrong */
    zepStsRegExpBackRefErr = -185,    /**< RegExp: Back reference is wrong */
    zepStsRegExpChClassErr = -184,    /**< RegExp: Character class is wrong */
    zepStsRegExpMetaChErr = -183,     /**< RegExp: Metacharacter is wrong */
    zepStsStrideMatrixErr =
        -182, /**< Stride value is not positive or not dividend to size of data type */
    zepStsCTRSizeErr = -181, /**< CTR: Size of the counter is out of range */
    zepStsJPEG2KCodeBlockIsNotAttached =
        -180,                      /**< JPEG2000: No code block is attached to the state */
    zepStsNotPosDefErr = -179,     /**< The matrix is not positive definite */
    zepStsEphemeralKeyErr = -178,  /**< Cryptography: Ephemeral key is wrong */
    zepStsMessageErr = -177,       /**< Cryptography: Message digest is wrong */
    zepStsShareKeyErr = -176,      /**< Cryptography: Shared key is wrong */
    zepStsIvalidPublicKey = -175,  /**< Cryptography: Public key is wrong */
    zepStsIvalidPrivateKey = -174, /**< Cryptography: Private key is wrong */
    zepStsOutOfECErr = -173, /**< Cryptography: The point does not lie on the elliptic curve */
    zepStsECCInvalidFlagErr =
        -172, /**< Cryptography: Flag of the elliptic curve operation is wrong */
    zepStsMP3FrameHeaderErr = -171, /**< MP3: Illegal values in the frame header */
    zepStsMP3SideInfoErr = -170,    /**< MP3: Illegal values in the side information */
    zepStsBlockStepErr = -169,      /**< Step of the block is less than 8 */
    zepStsMBStepErr = -168,         /**< Step of the macroblock is less than 16 */
    zepStsAacPrgNumErr = -167,  /**< AAC: Illegal number of elements in the program configuration */
    zepStsAacSectCbErr = -166,  /**< AAC: Illegal codebook of a section */
    zepStsAacSfValErr = -164,   /**< AAC: Illegal value of a scale factor */
    zepStsAacCoefValErr = -163, /**< AAC: Illegal value of a quantised coefficient */
    zepStsAacMaxSfbErr = -162,  /**< AAC: The greatest scale factor band is out of range */
    zepStsAacPredSfbErr =
        -161, /**< AAC: The greatest scale factor band of the predictor is out of range */
    zepStsAacPlsDataErr = -160,      /**< AAC: Illegal pulse data */
    zepStsAacGainCtrErr = -159,      /**< AAC: Gain control is not supported */
    zepStsAacSectErr = -158,         /**< AAC: Illegal number of sections */
    zepStsAacTnsNumFiltErr = -157,   /**< AAC: TNS: Illegal number of filters */
    zepStsAacTnsLenErr = -156,       /**< AAC: TNS: Illegal length of the filter region */
    zepStsAacTnsOrderErr = -155,     /**< AAC: TNS: Illegal order of the filter */
    zepStsAacTnsCoefResErr = -154,   /**< AAC: TNS: Illegal resolution of the coefficients */
    zepStsAacTnsCoefErr = -153,      /**< AAC: TNS: Illegal coefficients */
    zepStsAacTnsDirectErr = -152,    /**< AAC: TNS: Illegal direction of the filter */
    zepStsAacTnsProfileErr = -151,   /**< AAC: TNS: The profile does not allow the tool */
    zepStsAacErr = -150,             /**< AAC: Internal error */
    zepStsAacBitOffsetErr = -149,    /**< AAC: Illegal bit offset in the stream */
    zepStsAacAdtsSyncWordErr = -148, /**< AAC: ADTS: Illegal syncword */
    zepStsAacSmplRateIdxErr = -147,  /**< AAC: Illegal index of the sampling rate */
    zepStsAacWinLenErr = -146,       /**< AAC: Illegal length of the window */
    zepStsAacWinGrpErr = -145,       /**< AAC: Illegal grouping of the windows */
    zepStsAacWinSeqErr = -144,       /**< AAC: Illegal sequence of windows */
    zepStsAacComWinErr = -143,       /**< AAC: Illegal flag of the common window */
    zepStsAacStereoMaskErr = -142,   /**< AAC: Illegal mask of the stereo bands */
    zepStsAacChanErr = -141,         /**< AAC: Illegal number of channels */
    zepStsAacMonoStereoErr = -140,   /**< AAC: Illegal combination of mono and stereo layers */
    zepStsAacStereoLayerErr = -139,  /**< AAC: Illegal stereo layer */
    zepStsAacMonoLayerErr = -138,    /**< AAC: Illegal mono layer */
    zepStsAacScalableErr = -137,     /**< AAC: Illegal flag of the scalable object */
    zepStsAacObjTypeErr = -136,      /**< AAC: The audio object type is not supported */
    zepStsAacWinShapeErr = -135,     /**< AAC: Illegal shape of the window */
    zepStsAacPcmModeErr = -134,      /**< AAC: Illegal mode of the PCM output */
    zepStsVLCUsrTblHeaderErr = -133, /**< VLC: The header of the user table is wrong */
    zepStsVLCUsrTblUnsupportedFmtErr =
        -132, /**< VLC: The format of the user table is not supported */
    zepStsVLCUsrTblEscAlgTypeErr =
        -131, /**< VLC: The escape algorithm of the user table is not supported */
    zepStsVLCUsrTblEscCodeLengthErr =
        -130, /**< VLC: The length of the escape code in the user table is wrong */
    zepStsVLCUsrTblCodeLengthErr =
        -129,                       /**< VLC: The length of a code in the user table is wrong */
    zepStsVLCInternalTblErr = -128, /**< VLC: The internal table is wrong */
    zepStsVLCInputDataErr = -127,   /**< VLC: Illegal input data */
    zepStsVLCAACEscCodeLengthErr = -126, /**< VLC: AAC: The length of the escape code is wrong */
    zepStsNoiseRangeErr = -125,          /**< Range of the noise is out of bounds */
    zepStsUnderRunErr = -124, /**< The data of the buffer ran out before the end of the operation */
    zepStsPaddingErr = -123,  /**< Cryptography: Padding of the decrypted data is wrong */
    zepStsCFBSizeErr = -122,  /**< CFB: Size of the feedback is wrong */
    zepStsPaddingSchemeErr = -121,       /**< Cryptography: The padding scheme is not supported */
    zepStsInvalidCryptoKeyErr = -120,    /**< Cryptography: The key is too weak or wrong */
    zepStsLengthErr = -119,              /**< Length of the data is wrong */
    zepStsBadModulusErr = -118,          /**< Cryptography: Modulus is wrong */
    zepStsLPCCalcErr = -117,             /**< Linear prediction could not be evaluated */
    zepStsRCCalcErr = -116,              /**< Reflection coefficients could not be evaluated */
    zepStsIncorrectLSPErr = -115,        /**< Line spectral pairs are wrong */
    zepStsNoRootFoundErr = -114,         /**< No root of the equation was found */
    zepStsJPEG2KBadPassNumber = -113,    /**< JPEG2000: Number of the coding pass is out of range */
    zepStsJPEG2KDamagedCodeBlock = -112, /**< JPEG2000: The code block is damaged */
    zepStsH263CBPYCodeErr = -111,        /**< H263: Illegal code of the luminance block pattern */
    zepStsH263MCBPCInterCodeErr =
        -110, /**< H263: Illegal code of the chrominance pattern of an inter macroblock */
    zepStsH263MCBPCIntraCodeErr =
        -109, /**< H263: Illegal code of the chrominance pattern of an intra macroblock */
    zepStsNotEvenStepErr = -108,     /**< Step value is not a multiple of the pixel size */
    zepStsHistoNofLevelsErr = -107,  /**< Number of levels of the histogram is less than 2 */
    zepStsLUTNofLevelsErr = -106,    /**< Number of levels of the look-up table is less than 2 */
    zepStsMP4BitOffsetErr = -105,    /**< MP4: Offset in bits is out of range */
    zepStsMP4QPErr = -104,           /**< MP4: Illegal quantisation parameter */
    zepStsMP4BlockIdxErr = -103,     /**< MP4: Illegal index of the block */
    zepStsMP4BlockTypeErr = -102,    /**< MP4: Illegal type of the block */
    zepStsMP4MVCodeErr = -101,       /**< MP4: Illegal code of a motion vector */
    zepStsMP4VLCCodeErr = -100,      /**< MP4: Illegal variable length code */
    zepStsMP4DCCodeErr = -99,        /**< MP4: Illegal code of a DC coefficient */
    zepStsMP4FcodeErr = -98,         /**< MP4: Range code of the motion vectors is out of range */
    zepStsMP4AlignErr = -97,         /**< MP4: Alignment of the data is wrong */
    zepStsMP4TempDiffErr = -96,      /**< MP4: Temporal difference is wrong */
    zepStsMP4BlockSizeErr = -95,     /**< MP4: Illegal size of the block or macroblock */
    zepStsMP4ZeroBABErr = -94,       /**< MP4: All blocks of the binary alpha plane are empty */
    zepStsMP4PredDirErr = -93,       /**< MP4: Illegal direction of the prediction */
    zepStsMP4BitsPerPixelErr = -92,  /**< MP4: Number of bits per pixel is not supported */
    zepStsMP4VideoCompModeErr = -91, /**< MP4: The video component mode is not supported */
    zepStsMP4LinearModeErr = -90,    /**< MP4: DC prediction in the linear mode is not supported */
    zepStsH263PredModeErr = -83,     /**< H263: Illegal prediction mode */
    zepStsH263BlockStepErr = -82,    /**< H263: Step of the block is less than 8 */
    zepStsH263MBStepErr = -81,       /**< H263: Step of the macroblock is less than 16 */
    zepStsH263FrameWidthErr = -80,   /**< H263: Width of the frame is less than 8 */
    zepStsH263FrameHeightErr = -79,  /**< H263: Height of the frame is less than or equal to zero */
    zepStsH263ExpandPelsErr = -78,   /**< H263: Number of pixels to expand by is less than 8 */
    zepStsH263PlaneStepErr =
        -77, /**< H263: Step of the plane is less than the width of the frame */
    zepStsH263QuantErr =
        -76, /**< H263: Quantiser is less than or equal to zero, or greater than 31 */
    zepStsH263MVCodeErr = -75,  /**< H263: Illegal code of a motion vector */
    zepStsH263VLCCodeErr = -74, /**< H263: Illegal variable length code */
    zepStsH263DCCodeErr = -73,  /**< H263: Illegal code of a DC coefficient */
    zepStsH263ZigzagLenErr =
        -72,                  /**< H263: Length of the zigzag-scanned block is greater than 64 */
    zepStsFBankFreqErr = -71, /**< Filter bank: Frequencies of the channels are not in ascending
                                 order or out of range */
    zepStsFBankFlagErr = -70, /**< Filter bank: Illegal value of the flag */
    zepStsFBankErr = -69,     /**< Filter bank: Analysis or syntethis could not be performed */
    zepStsNegOccErr = -67,    /**< Number of occurrences is negative */
    zepStsCdbkFlagErr = -66,  /**< Illegal value of the codebook flag */
    zepStsSVDCnvgErr = -65,   /**< The singular value decomposition did not converge */
    zepStsJPEGHuffTableErr = -64, /**< JPEG: The Huffman table is destroyed */
    zepStsJPEGDCTRangeErr = -63,  /**< JPEG: DCT coefficient is out of range */
    zepStsJPEGOutOfBufErr =
        -62, /**< JPEG: The buffer is exhausted, suspansion of the coding is needed */
    zepStsDrawTextErr = -61,       /**< Text could not be drawn */
    zepStsChannelOrderErr = -60,   /**< Order of the destination channels is wrong */
    zepStsZeroMaskValuesErr = -59, /**< All values of the mask are zero */
    zepStsQuadErr = -58,         /**< The quadrangle is degenerate: a triangle, a line or a point */
    zepStsRectErr = -57,         /**< Size of the rectangle is less than or equal to 1 */
    zepStsCoeffErr = -56,        /**< Values of the transform coefficients are not allowed */
    zepStsNoiseValErr = -55,     /**< Value of the noise is not allowed */
    zepStsDitherLevelsErr = -54, /**< Number of dithering levels is out of range */
    zepStsNumChannelsErr = -53,  /**< Bad or unsupported number of channels */
    zepStsCOIErr = -52,          /**< The channel of interest is out of range */
    zepStsDivisorErr = -51,      /**< Divisor is equal to zero, function is aborted */
    zepStsAlphaTypeErr = -50,    /**< The type of alpha composition is not supported */
    zepStsGammaRangeErr = -49,   /**< Range of the gamma correction is less than or equal to zero */
    zepStsGrayCoefSumErr =
        -48, /**< Sum of the conversion coefficients must be less than or equal to 1 */
    zepStsChannelErr = -47,   /**< Illegal number of the channel */
    zepStsToneMagnErr = -46,  /**< Tone magnitude is less than or equal to zero */
    zepStsToneFreqErr = -45,  /**< Tone frequency is negative, or greater than or equal to 0.5 */
    zepStsTonePhaseErr = -44, /**< Tone phase is negative, or greater than or equal to 2*PI */
    zepStsTrnglMagnErr = -43, /**< Triangle magnitude is less than or equal to zero */
    zepStsTrnglFreqErr =
        -42, /**< Triangle frequency is negative, or greater than or equal to 0.5 */
    zepStsTrnglPhaseErr = -41, /**< Triangle phase is negative, or greater than or equal to 2*PI */
    zepStsTrnglAsymErr =
        -40, /**< Triangle asymmetry is less than -PI, or greater than or equal to PI */
    zepStsHugeWinErr = -39,      /**< Kaiser window is too huge */
    zepStsJaehneErr = -38,       /**< Magnitude of the Jaehne signal is negative */
    zepStsStrideErr = -37,       /**< Stride value is less than the length of the row */
    zepStsEpsValErr = -36,       /**< Epsilon value is negative */
    zepStsWtOffsetErr = -35,     /**< Offset of the wavelet filter is out of range */
    zepStsAnchorErr = -34,       /**< Anchor point is outside the mask */
    zepStsMaskSizeErr = -33,     /**< Size of the mask is not allowed */
    zepStsShiftErr = -32,        /**< Shift value is less than zero */
    zepStsSampleFactorErr = -31, /**< Sampling factor is less than or equal to zero */
    zepStsSamplePhaseErr = -30,  /**< Phase value is out of range: 0 <= phase < factor */
    zepStsFIRMRFactorErr = -29,  /**< MR FIR sampling factor is less than or equal to zero */
    /** MR FIR sampling phase is negative, or greater than or equal to the sampling factor */
    zepStsFIRMRPhaseErr = -28,   /**< MR FIR sampling phase is negative, or greater than or equal to
                                    the sampling factor */
    zepStsRelFreqErr = -27,      /**< Relative frequency value is out of range */
    zepStsFIRLenErr = -26,       /**< Length of a FIR filter is less than or equal to zero */
    zepStsIIROrderErr = -25,     /**< Order of an IIR filter is less than or equal to zero */
    zepStsDlyLineIndexErr = -24, /**< Invalid value of the delay line sample index */
    zepStsResizeFactorErr = -23, /**< Resize factor is less than or equal to zero */
    zepStsInterpolationErr = -22,  /**< The interpolation mode is not supported */
    zepStsMirrorFlipErr = -21,     /**< The mirror axis is not supported */
    zepStsMoment00ZeroErr = -20,   /**< Moment M(0,0) is too small to divide by */
    zepStsThreshNegLevelErr = -19, /**< Negative value of the level in the threshold operation */
    zepStsThresholdErr = -18,      /**< Invalid threshold bounds */
    zepStsContextMatchErr = -17,   /**< Context parameter doesn't match the operation */
    zepStsFftFlagErr = -16,        /**< Invalid value of the FFT flag parameter */
    zepStsFftOrderErr = -15,       /**< Invalid value of the FFT order parameter */
    zepStsStepErr = -14,           /**< Step value is not valid */
    zepStsScaleRangeErr = -13,     /**< Scale bounds are out of the range */
    zepStsDataTypeErr = -12,   /**< The data type does not fit the operation or is not supported */
    zepStsOutOfRangeErr = -11, /**< Argument is out of range or point is outside the image */
    zepStsDivByZeroErr = -10,  /**< An attempt to divide by zero */
    zepStsMemAllocErr = -9,    /**< Not enough memory allocated for the operation */
    zepStsNullPtrErr = -8,     /**< Null pointer error */
    zepStsRangeErr =
        -7, /**< Bad values of bounds: the lower bound is greater than the upper bound */
    zepStsSizeErr = -6,        /**< Wrong value of data size */
    zepStsBadArgErr = -5,      /**< Function arg/param is bad */
    zepStsNoMemErr = -4,       /**< Not enough memory for the operation */
    zepStsSAReservedErr3 = -3, /**< Unknown/unspecified error, -3 */
    zepStsErr = -2,            /**< Unknown/unspecified error, -2 */
    zepStsSAReservedErr1 = -1, /**< Unknown/unspecified error, -1 */
    zepStsNoErr = 0,           /**< No error, it's OK */
    zepStsNoOperation = 1,     /**< No operation has been executed */
    zepStsMisalignedBuf = 2,   /**< Misaligned pointer in operation in which it must be aligned */
    zepStsSqrtNegArg = 3,      /**< Negative value(s) of the argument in the function Sqrt */
    zepStsInvZero = 4,         /**< INF result. Zero value was met by InvThresh with zero level */
    zepStsEvenMedianMaskSize =
        5,                 /**< Even size of the Median Filter mask was replaced by the odd one */
    zepStsDivByZero = 6,   /**< Zero value(s) of the divisor in the function Div */
    zepStsLnZeroArg = 7,   /**< Zero value(s) of the argument in the function Ln */
    zepStsLnNegArg = 8,    /**< Negative value(s) of the argument in the function Ln */
    zepStsNanArg = 9,      /**< Not a Number argument value warning */
    zepStsJPEGMarker = 10, /**< JPEG: A marker was met in the bit stream */
    zepStsResFloor = 11,   /**< All result values are floored */
    zepStsOverflow = 12,   /**< Overflow occurred in the operation */
    zepStsLSFLow =
        13, /**< Line spectral frequencies were below the lower limit and have been corrected */
    zepStsLSFHigh =
        14, /**< Line spectral frequencies were above the upper limit and have been corrected */
    zepStsLSFLowAndHigh =
        15, /**< Line spectral frequencies were beyond both limits and have been corrected */
    zepStsZeroOcc = 16,            /**< Number of occurrences is zero */
    zepStsUnderflow = 17,          /**< Underflow occurred in the operation */
    zepStsSingularity = 18,        /**< Singularity occurred in the operation */
    zepStsDomain = 19,             /**< Argument is out of the function domain */
    zepStsNonIntelCpu = 20,        /**< The target cpu is not Genuine Intel */
    zepStsCpuMismatch = 21,        /**< The cpu type does not match any that can be selected */
    zepStsNoZepFunctionFound = 22, /**< No function for this cpu was found in the library */
    zepStsDllNotFoundBestUsed =
        23, /**< The library for this cpu was not found, the best one available is used */
    zepStsNoOperationInDll = 24,    /**< The function in the library does nothing */
    zepStsInsufficientEntropy = 25, /**< Cryptography: The random source has too little entropy */
    zepStsOvermuchStrings = 26,     /**< Number of strings exceeds the expected one */
    zepStsOverlongString = 27,      /**< Length of a string exceeds the expected one */
    zepStsAffineQuadChanged =
        28, /**< The fourth vertex of the quadrangle was changed to fit the affine transform */
    zepStsWrongIntersectROI =
        29, /**< The region of interest does not intersect the image, nothing was done */
    zepStsWrongIntersectQuad =
        30, /**< The quadrangle does not intersect the image, nothing was done */
    zepStsSmallerCodebook = 31,     /**< The codebook is smaller than the expected one */
    zepStsSrcSizeLessExpected = 32, /**< DC: The size of source buffer is less than expected one */
    zepStsDstSizeLessExpected =
        33,                     /**< DC: The size of destination buffer is less than expected one */
    zepStsStreamEnd = 34,       /**< DC: The end of stream processed */
    zepStsDoubleSize = 35,      /**< Sizes of the image are not a multiple of 2 */
    zepStsNotSupportedCpu = 36, /**< The cpu is not supported */
    zepStsUnknownCacheSize = 37,  /**< The cpu is supported, but the size of the cache is unknown */
    zepStsSymKernelExpected = 38, /**< The kernel is not symmetric */
    zepStsEvenMedianWeight =
        39, /**< Even weight of the Weighted Median Filter was replaced by the odd one */
    zepStsWrongIntersectVOI =
        40, /**< The volume of interest does not intersect the volume, nothing was done */
    zepStsI18nMsgCatalogInvalid =
        41, /**< The message catalog is invalid, the built-in messages are used */
    zepStsI18nGetMessageFail = 42, /**< The message could not be read from the catalog */
    zepStsWaterfall = 43,          /**< No library for this cpu was found, a lower one is used */
    zepStsPrevLibraryUsed = 44,    /**< The library of the previous version is used */
    zepStsLLADisabled = 45,        /**< Low level acceleration is disabled */
    zepStsNoAntialiasing = 46,     /**< The mode does not support antialiasing */
    zepStsRepetitiveSrcData = 47,  /**< DC: The source data is too repetitive */
} ZepStatus;

#endif
