// What precedes the pixel data in a JPEG file, read without decoding anything. Written by hand because libjpeg keeps
// every segment that it is asked for in a list and walks all of it for the next one: a file of a million empty segments
// would hold it up for minutes.
#pragma once

#include "imaging/files/Source.h"

namespace lumora {

struct JpegMarkers {
    bool complete = false; ///< a frame header and the start of the pixel data were found
    int width = 0;
    int height = 0;
    bool arithmetic = false;
    bool progressive = false;
    bool decodable = true; ///< false for lossless, hierarchical and more than 8 bits, which libjpeg cannot decode
    QByteArray exif;       ///< the first EXIF segment, empty without one
    QByteArray xmp;        ///< the XMP packet, empty without one
    QByteArray resources;  ///< of Photoshop, which hold the IPTC records
    QByteArray comment;
    double dotsPerInchX = 0; ///< by the JFIF segment, 0 where it does not say
    double dotsPerInchY = 0;
    QByteArray profile;   ///< the colour profile put together from its segments, empty without a whole one
    qint64 dataStart = 0; ///< where the coded data of the first scan begin
};

JpegMarkers readJpegMarkers(Source &source);

/// The scans of a progressive file, counted up to `most` + 1.
int countJpegScans(Source &source, const JpegMarkers &markers, int most);

} // namespace lumora
