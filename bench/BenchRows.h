// The groups of rows; each is added once by main.
#pragma once

namespace lumora {

void addImagingRows();
void addTransformRows();
void addFileRows();
void addClickRows();

} // namespace lumora
