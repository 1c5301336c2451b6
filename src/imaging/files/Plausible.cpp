#include "imaging/files/Plausible.h"

namespace lumora {

double leastPackedBytes(Packing packing, double unpackedBytes) {
    switch (packing) {
    case Packing::Stored:
        // One byte each. A file cut off late is still shown, but an eighth of it must be there.
        return unpackedBytes / 8;
    case Packing::RunLength:
        // Two bytes encode at most 255 pixels of BMP, 128 bytes of PackBits.
        return unpackedBytes / 128;
    case Packing::Deflate:
        // RFC 1951: a match of 258 bytes takes at least two bits, hence the 1032 : 1 that zlib states as its limit.
        return unpackedBytes / 1032;
    case Packing::Lzw:
        // A code of 12 bits encodes at most as many bytes as the table has codes, under 4096.
        return unpackedBytes / 4096 * 1.5;
    case Packing::FaxRows:
        // A row like the one above takes one bit.
        return unpackedBytes / 8;
    case Packing::JpegBlocks:
        // 64 pixels take at least the one bit of their DC coefficient.
        return unpackedBytes / 64 / 8;
    case Packing::WebPLossy:
        // RFC 6386: 256 pixels take three choices of fixed probability, 3.4 bits at least.
        return unpackedBytes / 640;
    case Packing::WebPExact:
        // No minimum: a picture of one colour can take 38 bytes at any size. With anything on it, 12 megapixels have
        // not been seen under 500 bytes.
        return unpackedBytes / 30'000;
    case Packing::Modern:
        // No minimum either. A white AVIF of 12 megapixels has 31,000 pixels a byte, containers included.
        return unpackedBytes / 50'000;
    case Packing::Dictionary:
        // Zstandard: four bytes encode a run of at most 128 KiB. LZMA needs less.
        return unpackedBytes / 32'768;
    }
    return 0;
}

} // namespace lumora
