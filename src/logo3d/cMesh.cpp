#include "logo3d/cMesh.h"

#include "runtime/Numbers.h"
#include "store/Files.h"
#include "store/ini.h"

#include <QFile>
#include <QOpenGLTexture>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <cmath>
#include <limits>

static_assert(sizeof(cMesh::Vertex) == 32);

namespace
{

QVector4D toVector(const aiColor4D &colour)
{
    return {colour.r, colour.g, colour.b, colour.a};
}

D3DMATERIAL materialOf(const aiMaterial &source)
{
    aiColor4D diffuse(0.6f, 0.6f, 0.6f, 1.0f);
    aiColor4D specular(0, 0, 0, 1);
    aiColor4D emissive(0, 0, 0, 1);
    float power = 0;
    source.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse);
    source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
    source.Get(AI_MATKEY_COLOR_EMISSIVE, emissive);
    source.Get(AI_MATKEY_SHININESS, power);
    D3DMATERIAL material;
    material.Diffuse = toVector(diffuse);
    material.Ambient = material.Diffuse; // an X file has no ambient colour
    material.Specular = toVector(specular);
    material.Emissive = toVector(emissive);
    material.Power = power;
    return material;
}

QImage textureOf(const aiMaterial &source, const QString &folder)
{
    aiString name;
    if (source.GetTexture(aiTextureType_DIFFUSE, 0, &name) != aiReturn_SUCCESS)
        return {};
    return QImage(folder + QFile::decodeName(name.C_Str()));
}

// The folder of a path, as the prefix the data file's name is appended to.
QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

cMesh::cMesh()
    : vertexBuffer_(QOpenGLBuffer::VertexBuffer), indexBuffer_(QOpenGLBuffer::IndexBuffer)
{
}

cMesh::~cMesh()
{
    releaseDeviceObjects();
}

void cMesh::releaseDeviceObjects()
{
    // They live in the device's context, which has to be current to free them.
    if (device_ && device_->makeCurrent()) {
        vertexBuffer_.destroy();
        indexBuffer_.destroy();
    }
    textures_.clear();
    device_ = nullptr;
}

bool cMesh::ReadXFile(const QString &path)
{
    vertices_.clear();
    indices_.clear();
    subsets_.clear();
    materials_.clear();
    textureImages_.clear();

    Assimp::Importer importer;
    const aiScene *scene =
        importer.ReadFile(QFile::encodeName(path).toStdString(),
                          aiProcess_Triangulate | aiProcess_JoinIdenticalVertices |
                              aiProcess_PreTransformVertices | aiProcess_GenNormals);
    if (!scene || !scene->HasMeshes() || !scene->HasMaterials())
        return false;

    const QString folder = folderOf(path);
    for (unsigned i = 0; i < scene->mNumMaterials; ++i) {
        materials_.push_back(materialOf(*scene->mMaterials[i]));
        textureImages_.push_back(textureOf(*scene->mMaterials[i], folder));
    }

    // One vertex buffer for the whole mesh, and the triangles grouped by material so that a
    // subset is one run of indices.
    std::vector<std::vector<std::uint32_t>> byMaterial(materials_.size());
    for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
        const aiMesh &mesh = *scene->mMeshes[m];
        const auto base = std::uint32_t(vertices_.size());
        for (unsigned v = 0; v < mesh.mNumVertices; ++v) {
            const aiVector3D &p = mesh.mVertices[v];
            const aiVector3D n = mesh.HasNormals() ? mesh.mNormals[v] : aiVector3D();
            const aiVector3D t =
                mesh.HasTextureCoords(0) ? mesh.mTextureCoords[0][v] : aiVector3D();
            vertices_.push_back({p.x, p.y, p.z, n.x, n.y, n.z, t.x, t.y});
        }
        std::vector<std::uint32_t> &subset = byMaterial.at(mesh.mMaterialIndex);
        for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
            const aiFace &face = mesh.mFaces[f];
            if (face.mNumIndices != 3)
                continue; // points and lines have no surface to show
            for (unsigned k = 0; k < 3; ++k)
                subset.push_back(base + face.mIndices[k]);
        }
    }
    for (const std::vector<std::uint32_t> &subset : byMaterial) {
        subsets_.push_back({int(indices_.size()), int(subset.size() / 3)});
        indices_.insert(indices_.end(), subset.begin(), subset.end());
    }
    if (indices_.empty()) {
        vertices_.clear();
        return false;
    }

    std::array<double, 3> maximum;
    minimum_.fill(std::numeric_limits<double>::max());
    maximum.fill(std::numeric_limits<double>::lowest());
    for (const Vertex &v : vertices_) {
        const double p[3] = {v.x, v.y, v.z};
        for (int axis = 0; axis < 3; ++axis) {
            minimum_[axis] = std::min(minimum_[axis], p[axis]);
            maximum[axis] = std::max(maximum[axis], p[axis]);
        }
    }
    for (int axis = 0; axis < 3; ++axis)
        extents_[axis] = maximum[axis] - minimum_[axis];

    // The reference is the vertex nearest the box's lowest corner, among those a 16-bit
    // index reaches.
    const std::size_t reachable = std::min<std::size_t>(vertices_.size(), 65536);
    double nearest = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < reachable; ++i) {
        const Vertex &v = vertices_[i];
        const double dx = v.x - minimum_[0];
        const double dy = v.y - minimum_[1];
        const double dz = v.z - minimum_[2];
        const double distance = dx * dx + dy * dy + dz * dz;
        if (distance < nearest) {
            nearest = distance;
            reference_ = std::uint16_t(i);
        }
    }
    return true;
}

void cMesh::ReadMData(const QString &folder)
{
    const QString file = folder + QLatin1String(files::kMdataIni);
    const QString section = QStringLiteral("DATA");
    rt::tryCDbl(ReadINI(file, section, QStringLiteral("X"), QString()), mdata_[0]);
    rt::tryCDbl(ReadINI(file, section, QStringLiteral("Y"), QString()), mdata_[1]);
    rt::tryCDbl(ReadINI(file, section, QStringLiteral("Z"), QString()), mdata_[2]);
}

bool cMesh::LoadMesh(const QString &path, cdirectx &device)
{
    releaseDeviceObjects();
    if (!ReadXFile(path) || !device.makeCurrent())
        return false;

    // The sizes come from "mdata.ini"; an axis without a usable size keeps the mesh's own.
    // The reference vertex goes where it puts the middle of the mesh on the origin.
    ReadMData(folderOf(path));
    std::array<double, 3> size;
    for (int axis = 0; axis < 3; ++axis)
        size[axis] = mdata_[axis] > 0 ? mdata_[axis] : extents_[axis];
    const std::array<double, 3> factor = factors(size[0], size[1], size[2]);
    const Vertex &reference = vertices_[reference_];
    const double offset[3] = {reference.x - minimum_[0], reference.y - minimum_[1],
                              reference.z - minimum_[2]};
    double point[3];
    for (int axis = 0; axis < 3; ++axis)
        point[axis] = (offset[axis] - extents_[axis] / 2) * factor[axis];
    ScaleToSize_AND_TranslateToPoint(size[0], size[1], size[2], point[0], point[1], point[2]);

    device_ = &device;
    vertexBuffer_.create();
    vertexBuffer_.bind();
    vertexBuffer_.setUsagePattern(QOpenGLBuffer::DynamicDraw);
    vertexBuffer_.allocate(vertices_.data(), int(vertices_.size() * sizeof(Vertex)));
    indexBuffer_.create();
    indexBuffer_.bind();
    indexBuffer_.allocate(indices_.data(), int(indices_.size() * sizeof(std::uint32_t)));
    verticesChanged_ = false;
    for (const QImage &image : textureImages_) {
        std::unique_ptr<QOpenGLTexture> texture;
        if (!image.isNull()) {
            texture = std::make_unique<QOpenGLTexture>(image);
            texture->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::Linear);
        }
        textures_.push_back(std::move(texture));
    }
    return true;
}

std::array<double, 3> cMesh::factors(const double &sizeX, const double &sizeY,
                                     const double &sizeZ) const
{
    const double size[3] = {sizeX, sizeY, sizeZ};
    std::array<double, 3> factor;
    for (int axis = 0; axis < 3; ++axis) // a flat axis has nothing to scale
        factor[axis] = extents_[axis] > 0 ? size[axis] / extents_[axis] : 1;
    return factor;
}

void cMesh::ScaleToSize_AND_TranslateToPoint(const double &sizeX, const double &sizeY,
                                             const double &sizeZ, double &x, double &y, double &z)
{
    if (vertices_.empty())
        return;
    const std::array<double, 3> f = factors(sizeX, sizeY, sizeZ);
    const Vertex &reference = vertices_[reference_];
    x -= reference.x * f[0];
    y -= reference.y * f[1];
    z -= reference.z * f[2];
    for (Vertex &v : vertices_) {
        v.x = float(v.x * f[0] + x);
        v.y = float(v.y * f[1] + y);
        v.z = float(v.z * f[2] + z);
        // Normals lean the other way when an axis stretches, or the light would lie.
        const double nx = v.nx / f[0];
        const double ny = v.ny / f[1];
        const double nz = v.nz / f[2];
        const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
        if (length > 0) {
            v.nx = float(nx / length);
            v.ny = float(ny / length);
            v.nz = float(nz / length);
        }
    }
    verticesChanged_ = true;
}

void cMesh::drawmesh()
{
    if (!device_)
        return;
    if (verticesChanged_) {
        vertexBuffer_.bind();
        vertexBuffer_.write(0, vertices_.data(), int(vertices_.size() * sizeof(Vertex)));
        verticesChanged_ = false;
    }
    device_->SetRenderState(d3d::D3DRS_ZENABLE, 1);
    for (int i = 0; i < numMaterials(); ++i) {
        device_->SetMaterial(materials_[i]);
        device_->SetTexture(textures_[i].get());
        DrawSubset(i);
    }
}

void cMesh::DrawSubset(int i)
{
    if (subsets_[i].count > 0)
        device_->DrawIndexedPrimitive(vertexBuffer_, indexBuffer_, subsets_[i].start,
                                      subsets_[i].count);
}
