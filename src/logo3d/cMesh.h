#pragma once

#include "logo3d/cdirectx.h"

#include <QImage>
#include <QOpenGLBuffer>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class QOpenGLTexture;

// A mesh read from a DirectX ".x" file with its materials and textures, drawn one subset
// per material. It keeps its own copy of the vertices, which placing the mesh changes and
// the next draw hands to the device.
class cMesh
{
public:
    // The layout of the vertex buffer: 32 bytes, the position first.
    struct Vertex {
        float x, y, z;
        float nx, ny, nz;
        float tu, tv;
    };

    cMesh();
    ~cMesh(); // the device must still be there
    cMesh(const cMesh &) = delete;
    cMesh &operator=(const cMesh &) = delete;

    // Reads the file, places the mesh as the "mdata.ini" beside it says and hands it to the
    // device. False, with nothing to draw, when the file is missing or holds no mesh, or the
    // device has no context.
    bool LoadMesh(const QString &path, cdirectx &device);
    // Only the file: vertices, subsets, materials and texture images.
    bool ReadXFile(const QString &path);

    void drawmesh();

    // Scales the mesh about its reference vertex to the requested sizes and puts that vertex
    // on the point. The point comes back changed: it is where the vertex at the origin went.
    void ScaleToSize_AND_TranslateToPoint(const double &sizeX, const double &sizeY,
                                          const double &sizeZ, double &x, double &y, double &z);

    // "mdata.ini" in `folder`, a prefix the file name is appended to as it is ("dir/").
    void ReadMData(const QString &folder);

    const std::vector<Vertex> &vertices() const { return vertices_; }
    int numMaterials() const { return int(materials_.size()); }
    std::uint16_t referenceVertex() const { return reference_; }
    const std::array<double, 3> &mdata() const { return mdata_; }

private:
    struct Subset {
        int start = 0; // in indices
        int count = 0; // in triangles
    };

    void DrawSubset(int i);
    void releaseDeviceObjects();
    std::array<double, 3> factors(const double &sizeX, const double &sizeY,
                                  const double &sizeZ) const;

    std::vector<Vertex> vertices_;
    std::vector<std::uint32_t> indices_;
    std::vector<Subset> subsets_;
    std::vector<D3DMATERIAL> materials_;
    std::vector<QImage> textureImages_;
    std::array<double, 3> minimum_{};
    std::array<double, 3> extents_{};
    std::uint16_t reference_ = 0;
    std::array<double, 3> mdata_{}; // "X", "Y", "Z": the sizes the mesh is shown at

    cdirectx *device_ = nullptr;
    QOpenGLBuffer vertexBuffer_;
    QOpenGLBuffer indexBuffer_;
    std::vector<std::unique_ptr<QOpenGLTexture>> textures_;
    bool verticesChanged_ = false;
};
