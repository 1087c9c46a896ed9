// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// Indexed-colour images in memory, and one way to show them: the layer under the lyric picture.
// It is pure standard library; what shows the result implements ScaleSurface.
//
// All coordinates count pixels from the top left corner. Rectangles are given as minimum x,
// maximum x, minimum y, maximum y, both bounds inclusive, except where a function says otherwise.
// Everything runs on the thread that made the object.
namespace lantern {

class PictureView;

struct DeviceRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

enum class PictureLook : std::uint8_t {
    Sharp,  // each pixel is a flat block, and a device pixel on which several fall mixes them
    Smooth, // edges run as in letters that have such pixels; at scales below 1.5 it is sharp
};

// The host's retained image that FGvbscale draws into, in device pixels.
struct SurfaceImage {
    std::uint32_t* pixels = nullptr; // 0xFFRRGGBB, owned by the surface; null while it has none
    int width = 0;                   // device pixels
    int height = 0;
    int stride = 0;                // pixels from one row to the next
    double devicePixelRatio = 1.0; // device pixels in one unit of FGvbscale's destination
    std::uint64_t generation = 0;  // changes whenever the image's contents were lost or replaced
    PictureLook look = PictureLook::Sharp;
};

class ScaleSurface {
public:
    virtual ~ScaleSurface() = default;
    virtual SurfaceImage Image() = 0;
    // Called once for each rectangle of the image that FGvbscale has just drawn, when all are
    // drawn. It may call FGvbscale again.
    virtual void Changed(const DeviceRect& rect) = 0;
};

// A copy of a rectangle of a buffer in its current colours, as FGvb2clip hands it out.
struct ClipImage {
    int width = 0;
    int height = 0;
    std::span<const std::uint32_t> pixels; // 0xFFRRGGBB, width times height, valid during the call
};

class ClipSink {
public:
    virtual ~ClipSink() = default;
    virtual void SetImage(const ClipImage& image) = 0;
};

// A handle names a buffer; 0 names none. A call with a handle that names no buffer, or a drawing
// call without an active buffer, does nothing; a read outside the active buffer gives index 0 and
// a write outside it is dropped.
class VirtualBuffers {
public:
    VirtualBuffers();
    ~VirtualBuffers();
    VirtualBuffers(const VirtualBuffers&) = delete;
    VirtualBuffers& operator=(const VirtualBuffers&) = delete;

    // What all buffers may hold together, some four thousand pictures. One buffer has at most 16384
    // pixels to a side and 2 to the power of 24 in all, as has the source rectangle of FGvbscale
    // and FGvb2clip.
    static constexpr std::size_t kMaxAllocatedPixels = std::size_t{1} << 28;

    void FGvbinit();                      // first; before it no buffer can be made
    void FGvbdepth(int bitsPerPixel);     // 8 is the only depth; no buffer can be made at another
    int FGvballoc(int width, int height); // filled with index 0; 0 if it can't be made
    void FGvbopen(int handle);
    void FGvbcolors(); // every buffer shows in the colours of FGsetdacs, with or without it
    void FGsetdc(ScaleSurface* surface); // borrowed; null shows nothing
    int FGlogpal(int first, int count, std::span<const std::uint8_t> colours);
    void FGrealize(int palette); // shows nothing new: a true-colour surface has no palette
    // Entries first..first+count-1 from three bytes each: red, green, blue, 0 to 255.
    void FGsetdacs(int first, int count, std::span<const std::uint8_t> colours);
    void FGsetcolor(int index);
    void FGfillpage();
    void FGputpixel(int x, int y);
    int FGgetpixel(int x, int y) const;
    void FGrect(int minX, int maxX, int minY, int maxY);
    // newX, newY: the lower left corner of the destination.
    void FGvbcopy(int minX, int maxX, int minY, int maxY, int newX, int newY, int source,
                  int destination);
    void FGcopypage(int source, int destination);
    // Shows a rectangle of the active buffer, scaled to the destination, on the surface, in the
    // surface's look. The destination's maximum bounds are edges: 0, W fills W units of the
    // surface. Only what looks different since the last call is drawn, all of it if the surface's
    // image or look, the source rectangle or the destination is another. An empty source or
    // destination draws nothing.
    void FGvbscale(int minX, int maxX, int minY, int maxY, int toMinX, int toMaxX, int toMinY,
                   int toMaxY);
    void FGvb2clip(int minX, int maxX, int minY, int maxY, ClipSink& sink) const;
    void FGvbclose();
    void FGvbfree(int handle);
    void FGvbfin(); // frees all buffers, and forgets the surface and the colours

    // Beyond the pixel operations: what a fast decoder needs.

    // Combines a block of 6 by 12 pixels of the active buffer with the rows given: bit 5 of a row
    // is its leftmost pixel, bits 6 and 7 don't count. A set bit is colour1, a clear one colour0;
    // with exclusive, the pixel's old index is combined with it by exclusive or. It is fast where
    // the whole block lies inside, and clipped where it does not.
    void DrawTile(int x, int y, std::span<const std::uint8_t, 12> rows, std::uint8_t colour0,
                  std::uint8_t colour1, bool exclusive);

    // Turns a buffer's picture round, whatever its size at the same cost: the pixel at left, top
    // comes to 0, 0, and what leaves on one side comes in on the other. A pixel outside is taken
    // as often around as it is away.
    void RollPage(int left, int top, int handle);

    // FGvbscale for one more surface, and its view, which remembers what stands there.
    void ShowOn(ScaleSurface& surface, PictureView& view, int minX, int maxX, int minY, int maxY,
                int toWidth, int toHeight) const;

    // The indexes of a buffer, row by row without padding, up to the next operation on it; empty
    // for a handle of none.
    std::span<const std::uint8_t> Pixels(int handle) const;
    int AllocatedCount() const; // buffers that exist now

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_impl;
};

} // namespace lantern
