#pragma once

#include "DxfReadStore.h"
#include "DxfReader.h"

#include <QTransform>

#include <vector>

// Places the parsed entities into the model's layers: model space as it is, block contents once per
// insertion, each through the transforms of the inserts that hold it.
namespace dxf::read {

class Placer {
public:
    Placer(Store& store, const DxfReadOptions& options, DxfModel& model, Problems& problems);
    void placeModelSpace();

private:
    void place(const std::vector<Record>& records, const QTransform& transform, int inheritedLayer);
    void placeRecord(const Record& record, const QTransform& transform, int layer);
    void placeInsert(const Record& record, const QTransform& transform, int layer);
    void placeText(const Record& record, const QTransform& transform, DxfLayer& layer);
    void addPath(const QPainterPath& path, const Record& record, DxfLayer& layer);
    // Counts entities and vertices against the bounds; false, once and for all, when one is passed.
    bool spend(qint64 entities, qint64 vertices);
    void refuse(const Record& record);
    const double* numbers(const Record& record) const { return m_store.numbers.data() + record.first; }

    Store& m_store; // its counts take the entities refused once placed
    DxfReadOptions m_options;
    DxfModel& m_model;
    Problems& m_problems;
    int m_layerZero;
    qint64 m_vertices = 0;
    bool m_stopped = false;
    std::vector<int> m_inserting; // the blocks being inserted, outermost first
};

} // namespace dxf::read
