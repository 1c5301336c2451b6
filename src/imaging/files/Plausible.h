// The fewest bytes that a file of a given picture size can have. A header that promises more than the file's bytes can
// ever decompress to is wrong, and is refused before memory for pixels is taken. Each format's header reader names its
// compression; PictureFile asks.
#pragma once

namespace lumora {

enum class Packing {
    Stored,     ///< not compressed
    RunLength,  ///< BMP's RLE, TIFF's PackBits
    Deflate,    ///< PNG, TIFF
    Lzw,        ///< GIF, TIFF
    FaxRows,    ///< CCITT in TIFF; unpacked bytes: one for each row
    JpegBlocks, ///< Huffman-coded JPEG; unpacked bytes: one for each pixel
    WebPLossy,  ///< the first partition of lossy WebP; unpacked bytes: one for each pixel
    WebPExact,  ///< lossless WebP; unpacked bytes: one for each pixel
    Modern,     ///< adaptive arithmetic coders: HEIF, some JPEG; unpacked bytes: one for each pixel
    Dictionary, ///< LZMA and Zstandard in TIFF
};

/// The fewest bytes of a file that can unpack to `unpackedBytes`.
double leastPackedBytes(Packing packing, double unpackedBytes);

} // namespace lumora
