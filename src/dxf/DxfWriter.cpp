#include "DxfWriter.h"

#include <QFileInfo>
#include <QHash>
#include <QIODevice>
#include <QStringList>
#include <QTextStream>

#include <array>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

namespace dxf {

namespace {

QString hex(quint32 handle) {
    return QString::number(handle, 16).toUpper();
}

// Serialises a drawing. Handles of the fixed structure come first, in the order below; entities follow,
// then the objects behind raster images.
class Writer {
public:
    Writer(QIODevice& device, const Drawing& drawing, const QStringList& imageFiles)
        : m_out(&device)
        , m_drawing(drawing)
        , m_imageFiles(imageFiles) {}

    bool write(int insunits, const QRectF& paper) {
        m_extents = m_drawing.isEmpty() ? paper : m_drawing.extents();
        for (quint32* h :
             {&vportTable,      &ltypeTable,    &layerTable,       &styleTable,       &viewTable,
              &ucsTable,        &appidTable,    &dimstyleTable,    &blockRecordTable, &vportActive,
              &ltypeByBlock,    &ltypeByLayer,  &ltypeContinuous,  &layer0,           &layerDefpoints,
              &styleStandard,   &appidAcad,     &dimstyleStandard, &modelRecord,      &paperRecord,
              &modelBlock,      &modelEnd,      &paperBlock,       &paperEnd,         &rootDict,
              &groupDict,       &layoutDict,    &mlineDict,        &plotSettingsDict, &plotStyleDict,
              &plotStyleNormal, &mlineStandard, &modelLayout,      &paperLayout})
            *h = m_next++;
        for (size_t i = 0; i < linetypes().size(); ++i)
            m_ltypeHandles.push_back(m_next++);
        m_firstEntity = m_next;
        m_next += quint32(m_drawing.entities().size());
        if (!m_drawing.images().isEmpty()) {
            imageDict = m_next++;
            rasterVariables = m_next++;
            for (qsizetype i = 0; i < m_drawing.images().size(); ++i)
                m_imageDefs.push_back(m_next++);
            m_imageDefReactors.resize(m_drawing.images().size());
            quint32 entity = m_firstEntity;
            for (const Entity& e : m_drawing.entities()) {
                if (e.image >= 0) {
                    m_reactors.insert(entity, m_next);
                    m_imageDefReactors[e.image].push_back({m_next++, entity});
                }
                ++entity;
            }
        }

        m_out.setEncoding(QStringConverter::Latin1);
        header(insunits);
        classes();
        tables();
        blocks();
        entities();
        objects();
        tag(0, "EOF");
        m_out.flush();
        return !m_refused;
    }

private:
    void tag(int code, const QString& value) {
        m_out << qSetFieldWidth(3) << code << qSetFieldWidth(0) << '\n' << value << '\n';
    }
    // A number no reader could take spoils the file: it is left out and the write fails.
    void tag(int code, double value) {
        if (std::isfinite(value))
            tag(code, real(value));
        else
            m_refused = true;
    }
    void handle(int code, quint32 h) { tag(code, hex(h)); }
    void point(int code, const QPointF& p) {
        tag(code, p.x());
        tag(code + 10, p.y());
        tag(code + 20, 0.0);
    }
    void beginSection(const char* name) {
        tag(0, "SECTION");
        tag(2, name);
    }
    void endSection() { tag(0, "ENDSEC"); }

    void header(int insunits) {
        beginSection("HEADER");
        auto var = [this](const char* name) { tag(9, name); };
        var("$ACADVER");
        tag(1, "AC1015");
        var("$DWGCODEPAGE");
        tag(3, "ANSI_1252");
        var("$INSBASE");
        point(10, QPointF());
        var("$EXTMIN");
        point(10, m_extents.topLeft());
        var("$EXTMAX");
        point(10, m_extents.bottomRight());
        var("$LIMMIN");
        tag(10, m_extents.left());
        tag(20, m_extents.top());
        var("$LIMMAX");
        tag(10, m_extents.right());
        tag(20, m_extents.bottom());
        var("$LTSCALE");
        tag(40, 1.0);
        var("$CLAYER");
        tag(8, "0");
        var("$CELTYPE");
        tag(6, "ByLayer");
        var("$TEXTSTYLE");
        tag(7, "Standard");
        var("$DIMSTYLE");
        tag(2, "Standard");
        var("$INSUNITS");
        tag(70, QString::number(insunits));
        var("$MEASUREMENT");
        tag(70, "1");
        var("$LWDISPLAY");
        tag(290, "1");
        var("$PSLTSCALE");
        tag(70, "1");
        var("$HANDSEED");
        handle(5, m_next);
        endSection();
    }

    void classes() {
        beginSection("CLASSES");
        // Name, C++ class, application, proxy flags, whether it is an entity.
        const std::array<std::tuple<const char*, const char*, const char*, int, int>, 7> defs = {
            {{"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", "ObjectDBX Classes", 0, 0},
             {"ACDBPLACEHOLDER", "AcDbPlaceHolder", "ObjectDBX Classes", 0, 0},
             {"LAYOUT", "AcDbLayout", "ObjectDBX Classes", 0, 0},
             {"IMAGE", "AcDbRasterImage", "ISM", 2175, 1},
             {"IMAGEDEF", "AcDbRasterImageDef", "ISM", 0, 0},
             {"IMAGEDEF_REACTOR", "AcDbRasterImageDefReactor", "ISM", 1, 0},
             {"RASTERVARIABLES", "AcDbRasterVariables", "ISM", 0, 0}}};
        for (const auto& [name, cppClass, application, flags, isEntity] : defs) {
            tag(0, "CLASS");
            tag(1, name);
            tag(2, cppClass);
            tag(3, application);
            tag(90, QString::number(flags));
            tag(280, "0");
            tag(281, QString::number(isEntity));
        }
        endSection();
    }

    void beginTable(const char* name, quint32 h, int count) {
        tag(0, "TABLE");
        tag(2, name);
        handle(5, h);
        tag(330, "0");
        tag(100, "AcDbSymbolTable");
        tag(70, QString::number(count));
    }
    void beginRecord(const char* type, quint32 h, quint32 table, const char* subclass, const QString& name,
                     int handleCode = 5) {
        tag(0, type);
        handle(handleCode, h);
        handle(330, table);
        tag(100, "AcDbSymbolTableRecord");
        tag(100, subclass);
        tag(2, name);
        tag(70, "0");
    }
    void endTable() { tag(0, "ENDTAB"); }

    void tables() {
        beginSection("TABLES");
        vport();
        ltypes();
        layers();
        beginTable("STYLE", styleTable, 1);
        beginRecord("STYLE", styleStandard, styleTable, "AcDbTextStyleTableRecord", "Standard");
        tag(40, 0.0);
        tag(41, 1.0);
        tag(50, 0.0);
        tag(71, "0");
        tag(42, 2.5);
        tag(3, "arial.ttf");
        tag(4, "");
        endTable();
        beginTable("VIEW", viewTable, 0);
        endTable();
        beginTable("UCS", ucsTable, 0);
        endTable();
        beginTable("APPID", appidTable, 1);
        beginRecord("APPID", appidAcad, appidTable, "AcDbRegAppTableRecord", "ACAD");
        endTable();
        beginTable("DIMSTYLE", dimstyleTable, 1);
        tag(100, "AcDbDimStyleTable");
        beginRecord("DIMSTYLE", dimstyleStandard, dimstyleTable, "AcDbDimStyleTableRecord", "Standard", 105);
        endTable();
        beginTable("BLOCK_RECORD", blockRecordTable, 2);
        beginRecord("BLOCK_RECORD", modelRecord, blockRecordTable, "AcDbBlockTableRecord", "*Model_Space");
        handle(340, modelLayout);
        beginRecord("BLOCK_RECORD", paperRecord, blockRecordTable, "AcDbBlockTableRecord", "*Paper_Space");
        handle(340, paperLayout);
        endTable();
        endSection();
    }

    void vport() {
        // The active viewport frames the whole drawing.
        const double height = std::max(m_extents.height(), 1.0) * 1.1;
        const double width = std::max(m_extents.width(), 1.0) * 1.1;
        beginTable("VPORT", vportTable, 1);
        beginRecord("VPORT", vportActive, vportTable, "AcDbViewportTableRecord", "*Active");
        tag(10, 0.0);
        tag(20, 0.0);
        tag(11, 1.0);
        tag(21, 1.0);
        tag(12, m_extents.center().x());
        tag(22, m_extents.center().y());
        tag(13, 0.0);
        tag(23, 0.0);
        tag(14, 10.0);
        tag(24, 10.0);
        tag(15, 10.0);
        tag(25, 10.0);
        point(16, QPointF());
        tag(36, 1.0);
        point(17, QPointF());
        tag(40, height);
        tag(41, width / height);
        tag(42, 50.0);
        tag(43, 0.0);
        tag(44, 0.0);
        tag(50, 0.0);
        tag(51, 0.0);
        for (auto [code, value] : std::array<std::pair<int, int>, 10>{{{71, 0},
                                                                       {72, 100},
                                                                       {73, 1},
                                                                       {74, 3},
                                                                       {75, 0},
                                                                       {76, 0},
                                                                       {77, 0},
                                                                       {78, 0},
                                                                       {281, 0},
                                                                       {65, 1}}})
            tag(code, QString::number(value));
        endTable();
    }

    void ltypes() {
        beginTable("LTYPE", ltypeTable, int(3 + m_ltypeHandles.size()));
        for (auto [h, name] : std::array<std::pair<quint32, const char*>, 3>{
                 {{ltypeByBlock, "ByBlock"}, {ltypeByLayer, "ByLayer"}, {ltypeContinuous, "Continuous"}}}) {
            beginRecord("LTYPE", h, ltypeTable, "AcDbLinetypeTableRecord", name);
            tag(3, h == ltypeContinuous ? "Solid line" : "");
            tag(72, "65");
            tag(73, "0");
            tag(40, 0.0);
        }
        size_t i = 0;
        for (const LinetypeDef& def : linetypes()) {
            beginRecord("LTYPE", m_ltypeHandles[i++], ltypeTable, "AcDbLinetypeTableRecord", def.name);
            tag(3, def.description);
            tag(72, "65");
            tag(73, QString::number(def.pattern.size()));
            double total = 0.0;
            for (double d : def.pattern)
                total += std::abs(d);
            tag(40, total);
            for (double d : def.pattern) {
                tag(49, d);
                tag(74, "0");
            }
        }
        endTable();
    }

    void layers() {
        beginTable("LAYER", layerTable, 2);
        beginRecord("LAYER", layer0, layerTable, "AcDbLayerTableRecord", "0");
        tag(62, "7");
        tag(6, "Continuous");
        tag(370, "-3");
        handle(390, plotStyleNormal);
        beginRecord("LAYER", layerDefpoints, layerTable, "AcDbLayerTableRecord", "Defpoints");
        tag(62, "7");
        tag(6, "Continuous");
        tag(290, "0"); // never plotted
        tag(370, "-3");
        handle(390, plotStyleNormal);
        endTable();
    }

    void blocks() {
        beginSection("BLOCKS");
        for (auto [begin, end, record, name] :
             std::array<std::tuple<quint32, quint32, quint32, const char*>, 2>{
                 {{modelBlock, modelEnd, modelRecord, "*Model_Space"},
                  {paperBlock, paperEnd, paperRecord, "*Paper_Space"}}}) {
            tag(0, "BLOCK");
            handle(5, begin);
            handle(330, record);
            tag(100, "AcDbEntity");
            if (record == paperRecord)
                tag(67, "1");
            tag(8, "0");
            tag(100, "AcDbBlockBegin");
            tag(2, name);
            tag(70, "0");
            point(10, QPointF());
            tag(3, name);
            tag(1, "");
            tag(0, "ENDBLK");
            handle(5, end);
            handle(330, record);
            tag(100, "AcDbEntity");
            if (record == paperRecord)
                tag(67, "1");
            tag(8, "0");
            tag(100, "AcDbBlockEnd");
        }
        endSection();
    }

    void entities() {
        beginSection("ENTITIES");
        quint32 h = m_firstEntity;
        for (const Entity& e : m_drawing.entities()) {
            tag(0, e.type);
            handle(5, h++);
            handle(330, modelRecord);
            tag(100, "AcDbEntity");
            tag(8, "0");
            if (e.image >= 0) {
                for (const Tag& t : e.tags)
                    tag(t);
                imageLinks(e.image, h - 1);
                continue;
            }
            if (e.style.linetype != "Continuous")
                tag(6, e.style.linetype);
            const QRgb rgb = e.style.color.rgb() & 0xffffff;
            tag(62, QString::number(aci(rgb)));
            tag(370, QString::number(e.style.lineweight));
            if (e.style.linetypeScale != 1.0)
                tag(48, e.style.linetypeScale);
            tag(420, QString::number(rgb));
            for (const Tag& t : e.tags)
                tag(t);
        }
        endSection();
    }

    void tag(const Tag& t) {
        if (t.text.isNull())
            tag(t.code, t.number);
        else
            tag(t.code, t.text);
    }

    // Entities share few colours: each is matched against the palette once.
    int aci(QRgb rgb) {
        auto found = m_aci.constFind(rgb);
        if (found == m_aci.constEnd())
            found = m_aci.insert(rgb, nearestAci(rgb));
        return *found;
    }

    // The rest of an IMAGE after its placement: its definition, how it shows, its reactor, and a
    // clipping rectangle around all of its pixels.
    void imageLinks(int image, quint32 entity) {
        const QImage& picture = m_drawing.images()[image];
        handle(340, m_imageDefs[size_t(image)]);
        tag(70, picture.hasAlphaChannel() ? "15" : "7"); // shown, also unaligned, clipped; transparent
        tag(280, "0");
        tag(281, "50");
        tag(282, "50");
        tag(283, "0");
        handle(360, m_reactors.value(entity));
        tag(71, "1");
        tag(91, "2");
        tag(14, -0.5);
        tag(24, -0.5);
        tag(14, picture.width() - 0.5);
        tag(24, picture.height() - 0.5);
    }

    void dictionary(quint32 h, quint32 owner, const QList<QPair<QString, quint32>>& entries,
                    const char* type = "DICTIONARY") {
        tag(0, type);
        handle(5, h);
        handle(330, owner);
        tag(100, "AcDbDictionary");
        tag(281, "1");
        for (const auto& [name, entry] : entries) {
            tag(3, name);
            handle(350, entry);
        }
    }

    void objects() {
        beginSection("OBJECTS");
        tag(0, "DICTIONARY");
        handle(5, rootDict);
        tag(330, "0");
        tag(100, "AcDbDictionary");
        tag(281, "1");
        for (auto [name, h] :
             std::array<std::pair<const char*, quint32>, 7>{{{"ACAD_GROUP", groupDict},
                                                             {"ACAD_IMAGE_DICT", imageDict},
                                                             {"ACAD_IMAGE_VARS", rasterVariables},
                                                             {"ACAD_LAYOUT", layoutDict},
                                                             {"ACAD_MLINESTYLE", mlineDict},
                                                             {"ACAD_PLOTSETTINGS", plotSettingsDict},
                                                             {"ACAD_PLOTSTYLENAME", plotStyleDict}}}) {
            if (h == 0)
                continue; // no images
            tag(3, name);
            handle(350, h);
        }
        dictionary(groupDict, rootDict, {});
        dictionary(layoutDict, rootDict, {{"Model", modelLayout}, {"Layout1", paperLayout}});
        dictionary(mlineDict, rootDict, {{"Standard", mlineStandard}});
        dictionary(plotSettingsDict, rootDict, {});
        dictionary(plotStyleDict, rootDict, {{"Normal", plotStyleNormal}}, "ACDBDICTIONARYWDFLT");
        tag(100, "AcDbDictionaryWithDefault");
        handle(340, plotStyleNormal);
        tag(0, "ACDBPLACEHOLDER");
        handle(5, plotStyleNormal);
        handle(330, plotStyleDict);
        mlineStyle();
        layout(modelLayout, "Model", 0, modelRecord);
        layout(paperLayout, "Layout1", 1, paperRecord);
        if (imageDict != 0)
            imageObjects();
        endSection();
    }

    // The image dictionary names each image definition after its file; definitions list the reactors
    // of the IMAGE entities that show them.
    void imageObjects() {
        QList<QPair<QString, quint32>> entries;
        for (qsizetype i = 0; i < m_imageFiles.size(); ++i)
            entries.append({QFileInfo(m_imageFiles[i]).completeBaseName(), m_imageDefs[size_t(i)]});
        dictionary(imageDict, rootDict, entries);
        tag(0, "RASTERVARIABLES");
        handle(5, rasterVariables);
        reactors(rootDict);
        tag(100, "AcDbRasterVariables");
        tag(90, "0");
        tag(70, "0"); // no frame
        tag(71, "1"); // high quality
        tag(72, "0"); // no units
        for (qsizetype i = 0; i < m_drawing.images().size(); ++i) {
            const QImage& picture = m_drawing.images()[i];
            tag(0, "IMAGEDEF");
            handle(5, m_imageDefs[size_t(i)]);
            tag(102, "{ACAD_REACTORS");
            handle(330, imageDict);
            for (const auto& [reactor, entity] : m_imageDefReactors[size_t(i)])
                handle(330, reactor);
            tag(102, "}");
            handle(330, imageDict);
            tag(100, "AcDbRasterImageDef");
            tag(90, "0");
            tag(1, m_imageFiles.value(i));
            tag(10, double(picture.width()));
            tag(20, double(picture.height()));
            tag(11, 1.0); // one drawing unit per pixel
            tag(21, 1.0);
            tag(280, "1");
            tag(281, "0");
            for (const auto& [reactor, entity] : m_imageDefReactors[size_t(i)]) {
                tag(0, "IMAGEDEF_REACTOR");
                handle(5, reactor);
                handle(330, entity);
                tag(100, "AcDbRasterImageDefReactor");
                tag(90, "2");
                handle(330, entity);
            }
        }
    }

    void reactors(quint32 owner) {
        tag(102, "{ACAD_REACTORS");
        handle(330, owner);
        tag(102, "}");
        handle(330, owner);
    }

    void mlineStyle() {
        tag(0, "MLINESTYLE");
        handle(5, mlineStandard);
        reactors(mlineDict);
        tag(100, "AcDbMlineStyle");
        tag(2, "Standard");
        tag(70, "0");
        tag(3, "");
        tag(62, "256");
        tag(51, 90.0);
        tag(52, 90.0);
        tag(71, "2");
        for (double offset : {0.5, -0.5}) {
            tag(49, offset);
            tag(62, "256");
            tag(6, "BYLAYER");
        }
    }

    // An A4 landscape page in millimetres; the model layout plots the drawing's extents.
    void layout(quint32 h, const char* name, int tabOrder, quint32 record) {
        tag(0, "LAYOUT");
        handle(5, h);
        reactors(layoutDict);
        tag(100, "AcDbPlotSettings");
        tag(1, "");
        tag(2, "none_device");
        tag(4, "ISO_A4_(297.00_x_210.00_MM)");
        tag(6, "");
        for (auto [code, value] : std::array<std::pair<int, double>, 16>{{{40, 7.5},
                                                                          {41, 20.0},
                                                                          {42, 7.5},
                                                                          {43, 20.0},
                                                                          {44, 297.0},
                                                                          {45, 210.0},
                                                                          {46, 0.0},
                                                                          {47, 0.0},
                                                                          {48, 0.0},
                                                                          {49, 0.0},
                                                                          {140, 0.0},
                                                                          {141, 0.0},
                                                                          {142, 1.0},
                                                                          {143, 1.0},
                                                                          {147, 1.0},
                                                                          {148, 0.0}}})
            tag(code, value);
        tag(149, 0.0);
        tag(70, tabOrder == 0 ? "1024" : "0");
        tag(72, "1");
        tag(73, "0");
        tag(74, tabOrder == 0 ? "1" : "5");
        tag(7, "");
        tag(75, "0");
        tag(100, "AcDbLayout");
        tag(1, name);
        tag(70, "1");
        tag(71, QString::number(tabOrder));
        tag(10, 0.0);
        tag(20, 0.0);
        tag(11, 297.0);
        tag(21, 210.0);
        point(12, QPointF());
        point(14, m_extents.topLeft());
        point(15, m_extents.bottomRight());
        tag(146, 0.0);
        point(13, QPointF());
        point(16, QPointF(1.0, 0.0));
        point(17, QPointF(0.0, 1.0));
        tag(76, "0");
        handle(330, record);
    }

    QTextStream m_out;
    const Drawing& m_drawing;
    const QStringList m_imageFiles;
    QRectF m_extents;
    bool m_refused = false;
    QHash<QRgb, int> m_aci;
    std::vector<quint32> m_imageDefs;
    std::vector<std::vector<std::pair<quint32, quint32>>> m_imageDefReactors; // reactor and its entity
    QHash<quint32, quint32> m_reactors;                                       // entity to its reactor
    quint32 m_next = 1;
    quint32 m_firstEntity = 0;
    std::vector<quint32> m_ltypeHandles;
    quint32 vportTable = 0, ltypeTable = 0, layerTable = 0, styleTable = 0, viewTable = 0, ucsTable = 0,
            appidTable = 0, dimstyleTable = 0, blockRecordTable = 0, vportActive = 0, ltypeByBlock = 0,
            ltypeByLayer = 0, ltypeContinuous = 0, layer0 = 0, layerDefpoints = 0, styleStandard = 0,
            appidAcad = 0, dimstyleStandard = 0, modelRecord = 0, paperRecord = 0, modelBlock = 0,
            modelEnd = 0, paperBlock = 0, paperEnd = 0, rootDict = 0, groupDict = 0, layoutDict = 0,
            mlineDict = 0, plotSettingsDict = 0, plotStyleDict = 0, plotStyleNormal = 0, mlineStandard = 0,
            modelLayout = 0, paperLayout = 0, imageDict = 0, rasterVariables = 0;
};

} // namespace

bool write(QIODevice& out, const Drawing& drawing, int insunits, const QRectF& paper,
           const QStringList& imageFiles) {
    return Writer(out, drawing, imageFiles).write(insunits, paper);
}

} // namespace dxf
