#include "DxfReader.h"

#include "DxfReadColors.h"
#include "DxfReadEntities.h"
#include "DxfReadPlace.h"
#include "DxfReadStore.h"
#include "DxfReadText.h"
#include "DxfReadTokens.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace dxf::read;

namespace {

enum class Section { None, Header, Tables, Blocks, Entities, Other };
enum class RecordKind { None, Section, Layer, Block, BlockEnd, Entity };

constexpr int kMostInsunits = 20;
// Bounds on the bounds: records index their numbers with 32 bits, and inserts recurse.
constexpr qint64 kMostEntities = qint64(1) << 30;
constexpr qint64 kMostVertices = qint64(1) << 30;
constexpr int kMostNesting = 100;

DxfReadOptions sanitized(DxfReadOptions options) {
    if (!(options.tolerance > 0) || !std::isfinite(options.tolerance))
        options.tolerance = DxfReadOptions().tolerance;
    options.maxEntities = std::clamp<qint64>(options.maxEntities, 0, kMostEntities);
    options.maxVertices = std::clamp<qint64>(options.maxVertices, 0, kMostVertices);
    options.maxNesting = std::clamp(options.maxNesting, 0, kMostNesting);
    return options;
}

// The smallest rectangle holding every point given, however flat.
class Bounds {
public:
    void add(const QPointF& p) {
        m_left = std::min(m_left, p.x());
        m_right = std::max(m_right, p.x());
        m_top = std::min(m_top, p.y());
        m_bottom = std::max(m_bottom, p.y());
    }
    QRectF rect() const {
        return m_left <= m_right ? QRectF(QPointF(m_left, m_top), QPointF(m_right, m_bottom)) : QRectF();
    }

private:
    double m_left = std::numeric_limits<double>::infinity(), m_right = -m_left;
    double m_top = m_left, m_bottom = -m_left;
};

// Reads the sections of a file in one pass: header variables, layers, block definitions and
// entities; placing them comes after, once every block is known.
class FileReader {
public:
    FileReader(const QByteArray& data, const DxfReadOptions& options, DxfModel& model)
        : m_tokens(data)
        , m_builder(m_store, options.maxEntities, options.maxVertices)
        , m_options(options)
        , m_model(model) {}

    void run();

private:
    void beginRecord(std::string_view type);
    void endRecord();
    void pair(const Pair& p);
    void headerPair(const Pair& p);
    std::vector<Record>* container();
    QString string(std::string_view raw) const { return decodeString(trimmed(raw), m_utf8); }
    void report();

    Tokens m_tokens;
    Store m_store;
    EntityBuilder m_builder;
    Problems m_problems;
    DxfReadOptions m_options;
    DxfModel& m_model;

    Section m_section = Section::None;
    RecordKind m_record = RecordKind::None;
    bool m_utf8 = true;
    bool m_sawSection = false;
    bool m_sawEnd = false;
    bool m_sectionNamed = false;
    std::string_view m_variable;
    int m_block = -1; // the block whose entities are being read

    // The LAYER or BLOCK record being read.
    struct {
        std::string_view name;
        std::string_view color, trueColor, flags, x, y;
    } m_table;
};

void FileReader::run() {
    Pair p;
    while (m_tokens.next(p)) {
        if (p.code != 0) {
            pair(p);
            continue;
        }
        endRecord();
        if (m_sawEnd || m_builder.overLimit())
            break;
        beginRecord(trimmed(p.value));
    }
    if (!m_sawSection) {
        m_model.report.error = m_tokens.malformed() || m_tokens.line() > 0
                                   ? QStringLiteral("not a DXF file: no section found")
                                   : QStringLiteral("the file is empty");
        return;
    }
    if (m_builder.overLimit()) {
        m_model.report.limitReached = true;
        m_problems.add(QStringLiteral("more than %1 entities or %2 vertices: the rest is left out")
                           .arg(m_options.maxEntities)
                           .arg(m_options.maxVertices));
    } else if (m_tokens.malformed()) {
        m_problems.add(QStringLiteral("line %1 holds no group code: the rest of the file is left out")
                           .arg(m_tokens.line()));
    } else if (!m_sawEnd) {
        m_problems.add(QStringLiteral("the file ends early: its last entity is left out"));
    }
    m_builder.finishPolyline();

    m_model.layers = m_store.layers;
    Placer placer(m_store, m_options, m_model, m_problems);
    placer.placeModelSpace();
    report();
}

void FileReader::beginRecord(std::string_view type) {
    m_record = RecordKind::None;
    const bool structure = type == "SECTION" || type == "ENDSEC" || type == "EOF";
    const bool entity = !structure && (m_section == Section::Entities ||
                                       (m_section == Section::Blocks && type != "BLOCK" && type != "ENDBLK"));
    if (entity) {
        m_record = RecordKind::Entity;
        m_builder.begin(type, m_utf8);
        return;
    }
    m_builder.finishPolyline();
    m_table = {};
    if (type == "SECTION") {
        m_record = RecordKind::Section;
        m_sectionNamed = false;
        m_sawSection = true;
    } else if (type == "ENDSEC") {
        m_section = Section::None;
        m_block = -1;
    } else if (type == "EOF") {
        m_sawEnd = true;
    } else if (m_section == Section::Tables && type == "LAYER") {
        m_record = RecordKind::Layer;
    } else if (m_section == Section::Blocks) {
        m_record = type == "BLOCK" ? RecordKind::Block : RecordKind::BlockEnd;
    }
}

void FileReader::pair(const Pair& p) {
    switch (m_record) {
    case RecordKind::Entity:
        m_builder.add(p);
        break;
    case RecordKind::Section:
        if (p.code == 2 && !m_sectionNamed) {
            m_sectionNamed = true;
            const std::string_view name = trimmed(p.value);
            m_section = name == "HEADER"     ? Section::Header
                        : name == "TABLES"   ? Section::Tables
                        : name == "BLOCKS"   ? Section::Blocks
                        : name == "ENTITIES" ? Section::Entities
                                             : Section::Other;
        } else if (m_section == Section::Header) {
            headerPair(p);
        }
        break;
    case RecordKind::Layer:
    case RecordKind::Block:
        if (p.code == 2)
            m_table.name = p.value;
        else if (p.code == 62)
            m_table.color = p.value;
        else if (p.code == 420)
            m_table.trueColor = p.value;
        else if (p.code == 70)
            m_table.flags = p.value;
        else if (p.code == 10)
            m_table.x = p.value;
        else if (p.code == 20)
            m_table.y = p.value;
        break;
    case RecordKind::BlockEnd:
    case RecordKind::None:
        break;
    }
}

void FileReader::headerPair(const Pair& p) {
    if (p.code == 9) {
        m_variable = trimmed(p.value);
    } else if (m_variable == "$ACADVER" && p.code == 1) {
        m_model.version = string(p.value);
        m_utf8 = m_model.version.size() != 6 || m_model.version >= QLatin1String("AC1021");
    } else if (m_variable == "$INSUNITS" && p.code == 70) {
        bool ok = false;
        const int units = toInt(p.value, &ok);
        if (ok && units >= 0 && units <= kMostInsunits)
            m_model.insunits = units;
        else
            m_problems.add(QStringLiteral("unknown drawing units $INSUNITS %1: read as unitless")
                               .arg(string(p.value).left(20)));
    }
}

std::vector<Record>* FileReader::container() {
    if (m_section == Section::Entities)
        return &m_store.model;
    if (m_section == Section::Blocks && m_block >= 0)
        return &m_store.blocks[size_t(m_block)].records;
    return nullptr;
}

void FileReader::endRecord() {
    bool ok = false;
    switch (m_record) {
    case RecordKind::Entity:
        m_builder.finish(container());
        break;
    case RecordKind::Layer: {
        const QString name = string(m_table.name);
        if (name.isEmpty())
            break;
        DxfLayer& layer = m_store.layers[m_store.layerFor(name)];
        const int color = m_table.color.empty() ? 7 : toInt(m_table.color, &ok);
        const qint64 rgb = m_table.trueColor.empty() ? -1 : toInt(m_table.trueColor, &ok);
        const int flags = toInt(m_table.flags, &ok);
        layer.color = rgb >= 0 ? trueColor(rgb) : aciToColor(std::abs(color));
        layer.visible = color >= 0 && !(flags & 1); // off: a negative colour; frozen: flag 1
        break;
    }
    case RecordKind::Block: {
        const QString name = string(m_table.name);
        if (name.isEmpty()) {
            m_block = -1;
            m_problems.add(QStringLiteral("a block without a name is left out"));
            break;
        }
        m_block = m_store.blockFor(name);
        Block& block = m_store.blocks[size_t(m_block)];
        const double x = toReal(m_table.x, &ok), y = toReal(m_table.y, &ok);
        block.base = sane(x) && sane(y) ? QPointF(x, y) : QPointF();
        block.external = toInt(m_table.flags, &ok) & 4;
        block.defined = true;
        block.records.clear(); // a later definition replaces an earlier one
        break;
    }
    case RecordKind::BlockEnd:
        m_block = -1;
        break;
    case RecordKind::Section:
    case RecordKind::None:
        break;
    }
    m_record = RecordKind::None;
}

void FileReader::report() {
    DxfReadReport& r = m_model.report;
    const Counts& counts = m_store.counts;
    for (int t = 0; t < TypeCount; ++t) {
        const QString name = QString::fromLatin1(kTypeNames[size_t(t)]);
        if (counts.read[size_t(t)] > 0)
            r.read.insert(name, counts.read[size_t(t)]);
        if (counts.refused[size_t(t)] > 0)
            r.refused.insert(name, counts.refused[size_t(t)]);
    }
    for (const auto& [name, count] : counts.unsupported)
        r.unsupported.insert(decodeString(name, m_utf8), count);
    if (counts.paperSpace > 0)
        m_problems.add(QStringLiteral("%1 entities of paper space are left out").arg(counts.paperSpace));
    r.problems = m_problems.lines();

    Bounds bounds;
    for (const DxfLayer& layer : std::as_const(m_model.layers)) {
        if (!layer.path.isEmpty()) {
            const QRectF box = layer.path.boundingRect();
            bounds.add(box.topLeft());
            bounds.add(box.bottomRight());
        }
        for (const QPointF& p : layer.points)
            bounds.add(p);
        for (const DxfText& text : layer.texts)
            bounds.add(text.position);
    }
    m_model.extents = bounds.rect();
}

bool isBinaryDxf(const QByteArray& data) {
    return data.startsWith("AutoCAD Binary DXF");
}

} // namespace

DxfModel readDxf(const QByteArray& data, const DxfReadOptions& options) {
    DxfModel model;
    if (isBinaryDxf(data)) {
        model.report.error = QStringLiteral("binary DXF is not read: save the drawing as ASCII DXF");
        return model;
    }
    const QByteArray bom("\xEF\xBB\xBF");
    const QByteArray text = data.startsWith(bom) ? QByteArray::fromRawData(data.constData() + bom.size(),
                                                                           data.size() - bom.size())
                                                 : data;
    FileReader(text, sanitized(options), model).run();
    return model;
}

DxfModel readDxf(QIODevice& device, const DxfReadOptions& options) {
    if (!device.isOpen() && !device.open(QIODevice::ReadOnly)) {
        DxfModel model;
        model.report.error = QStringLiteral("cannot read: %1").arg(device.errorString());
        return model;
    }
    return readDxf(device.readAll(), options);
}

DxfModel readDxfFile(const QString& fileName, const DxfReadOptions& options) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        DxfModel model;
        model.report.error = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return model;
    }
    return readDxf(file, options);
}

QTransform dxfExportToScene(const QRectF& sceneRect) {
    const QSize device = sceneRect.size().toSize();
    double k = 1.0;
    if (!device.isEmpty() && sceneRect.width() > 0 && sceneRect.height() > 0)
        k = std::min(device.width() / sceneRect.width(), device.height() / sceneRect.height());
    return QTransform(1 / k, 0, 0, -1 / k, sceneRect.left(), sceneRect.top() + device.height() / k);
}
