// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/dxfhatch.h"
#include "simengine/importers/dxfscene.h"
#include "simengine/importers/nurbs.h"

#include <dxflib/dl_creationadapter.h>

class QTextCodec;

namespace sim {

/// Takes what the library reads from a DXF file and makes entities of it.
class DxfReader : public DL_CreationAdapter {
public:
    DxfReader(DxfScene& scene, ImportResult& result, ImportBudget& budget);

    /// After the last pair of the file.
    void finish();
    int sectionCount() const { return m_sections; }
    /// What the header says of the unit, for the report.
    QString unitText() const;

    /// Called with each pair before the library reads it: it hands an entity over when the next one begins, tells
    /// neither all flags nor what it passes over. True when the pair is not for the library: the numbers of lines,
    /// light polylines, splines and hatches, of which files have most, for each of which it makes a stream, and of
    /// which it keeps more than the file has bytes.
    bool notePair(int code, const char* value, int size);

    void setVariableInt(const std::string& key, int value, int code) override;
    void setVariableString(const std::string& key, const std::string& value, int code) override;
    void addLayer(const DL_LayerData& data) override;
    void addBlock(const DL_BlockData& data) override;
    void endBlock() override;
    void addPoint(const DL_PointData& data) override;
    void addLine(const DL_LineData& data) override;
    void addXLine(const DL_XLineData& data) override;
    void addRay(const DL_RayData& data) override;
    void addArc(const DL_ArcData& data) override;
    void addCircle(const DL_CircleData& data) override;
    void addEllipse(const DL_EllipseData& data) override;
    void addPolyline(const DL_PolylineData& data) override;
    void addVertex(const DL_VertexData& data) override;
    void addSpline(const DL_SplineData& data) override;
    void addInsert(const DL_InsertData& data) override;
    void addTrace(const DL_TraceData& data) override;
    void add3dFace(const DL_3dFaceData& data) override;
    void addSolid(const DL_SolidData& data) override;
    void addMText(const DL_MTextData& data) override;
    void addMTextChunk(const std::string& text) override;
    void addText(const DL_TextData& data) override;
    void addArcAlignedText(const DL_ArcAlignedTextData& data) override;
    void addAttribute(const DL_AttributeData& data) override;
    void addHatch(const DL_HatchData& data) override;
    void addImage(const DL_ImageData& data) override;
    void endEntity() override;
    void endSequence() override;

private:
    /// The plane of an entity: its coordinates to the drawing's, heights left out.
    struct Plane {
        QTransform toDrawing;
        bool tilted = false;
    };
    struct Vertex {
        QPointF place;
        double bulge;
    };
    /// Bytes of a vertex while its table grows.
    static constexpr qint64 kVertexBytes = 40;

    Plane plane(double height) const;
    bool take(const char* kind, DxfItem& item);
    void put(DxfItem&& item);
    void flush();
    void finishPolyline();
    PathShape polylinePath(const std::vector<Vertex>& vertices);
    void quad(const char* kind, const double* x, const double* y, const double* z, bool ownPlane);
    void putText(const char* kind, const DL_TextData& data);
    QStringList plainLines(const char* kind, const DxfPlainText& plain);
    void settle();
    void applyUnit();
    void skip(const char* kind, Note note);
    void convert(const char* kind, Note note);
    QString decoded(const std::string& bytes);

    DxfScene& m_scene;
    ImportResult& m_result;
    ImportBudget& m_budget;
    int m_sections = 0;
    int m_unitCode = -1;
    int m_measurement = -1;
    bool m_unitApplied = false;
    bool m_modern = false; ///< texts are UTF-8
    QTextCodec* m_codec = nullptr;
    bool m_badText = false;

    bool takeNumber(int code, const char* value, int size);
    bool takeLineNumber(int code, double value);
    bool takePolylineNumber(int code, double value);
    bool takeSplineNumber(int code, double value);
    bool takeHatchNumber(int code, double value);
    void nextEntity(const std::string& name);
    void nextNumbers(const std::string& name);
    bool hold(qint64 bytes);

    /// A spline as it is read.
    struct Spline {
        Nurbs nurbs;
        std::vector<QPointF> fitPoints;
    };

    enum class Numbers { Library, Line, LightPolyline, Polyline, Spline, Hatch, Leader };
    Numbers m_numbers = Numbers::Library; ///< who reads those of the current entity
    std::array<double, 6> m_currentLine{};
    std::array<double, 6> m_line{};
    std::vector<Vertex> m_currentVertices;
    std::vector<Vertex> m_lightVertices;
    Spline m_currentSpline;
    Spline m_spline;
    DxfHatch m_currentHatch;
    PathShape m_hatch;
    int m_hatchFaults = 0;
    qint64 m_currentHeld = 0; ///< bytes of vertices and splines, given back when their entity is over
    qint64 m_held = 0;

    // the entity that is being read, and the one before it, which the library hands over when the next one begins
    std::string m_current;
    std::string m_before;
    int m_currentFlags = 0;
    int m_flags = 0;
    bool m_currentInvisible = false;
    bool m_invisible = false;
    bool m_currentHigh = false; ///< a height that is not 0
    bool m_high = false;
    bool m_currentWide = false; ///< a width that is not 0
    bool m_wide = false;
    bool m_handled = true;
    bool m_inEntities = false;
    bool m_beforeInEntities = false;

    bool m_polyline = false;
    int m_polylineFlags = 0;
    bool m_polylineTaken = false;
    DxfItem m_polylineItem;
    Plane m_polylinePlane;
    std::vector<Vertex> m_vertices;
    qint64 m_verticesHeld = 0;

    std::string m_paragraph;
    bool m_paragraphTooLong = false;
};

} // namespace sim
