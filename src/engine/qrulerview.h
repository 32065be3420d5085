// SPDX-License-Identifier: MIT
#pragma once

#include "engine/basepoint.h"
#include "engine/dissimilationparam.h"
#include "engine/drawnparts.h"
#include "engine/engineapi.h"
#include "engine/fillparam.h"
#include "engine/layerparamex.h"
#include "engine/marktypes.h"

#include <QList>
#include <QMutex>
#include <QPointF>
#include <QString>
#include <QVector>
#include <QWidget>
#include <atomic>
#include <memory>

class MarkShapeContainer;
class MarkTool;
class VZListViewEx;

/// Draws and owns one mark document. Main thread, but for GetLayerParams, GetMarkTools, GetFileName,
/// SetCallBackMirrorPt and OnKeyUpDonwEvent, which worker threads call too. Deleting the widget ends the document.
/// Coordinates in mm, origin in the field centre, x to the right and y upwards. Indices count the top-level objects in
/// marking order from 0. An editing operation is one step of undo; with the document read-only it does nothing.
class ENGINE_API QRulerView : public QWidget {
    Q_OBJECT
public:
    explicit QRulerView(QWidget* parent);
    ~QRulerView() override;
    /// Once before the first view.
    static void Init();

    // File
    /// Sets the document's file: a path, or a bare name, which means /MarkFile/<name>.mkf below the application
    /// directory.
    void SetFileName(QString const& name);
    /// The name as it was set, so that a document is found again by the name that it was opened by.
    QString GetFileName() const;
    /// Reads the set file; false when it is missing, damaged or of a newer format, and the document stays as it was.
    bool ReadDoc();
    /// Takes a document pushed by a controlling station. `first` tells its content: "data:" and the base64 of the
    /// file's bytes, "upload:" and the name under which the station has put it, or a document of this machine. `second`
    /// is its name, by which SetFileName is called. Both names are as in SetFileName and lie in the documents folder.
    /// False when there is no such content, when it is damaged or of a newer format, or when a name leads out of the
    /// folder: the document and its name then stay as they were. Nothing is written.
    bool ReadDoc(QString const& first, QString const& second);
    /// Writes the set file: after a power cut it is the old or the new one. False when it could not be written.
    bool SaveDoc();

    // Marking
    LayerParamEx* GetLayerParams();
    MarkShapeContainer* GetMarkTools();
    /// Called on the main thread with the place of a press while teaching, mm; null takes it back.
    void SetCallBackMirrorPt(void (*callback)(QPointF));

    // Object list
    /// Widget for the left panel, hidden at first. It and the list inside may be re-parented; both go with the view.
    QWidget* GetShowObjList();
    /// The list inside that widget.
    VZListViewEx* GetObjListView();

    // Operator
    void SetOperatorOnView(OperatorOnView op);
    OperatorOnView GetOperatorOnView() const;
    /// Object that the next presses place, null for none; takes ownership.
    void SetCurAddMarkTool(MarkTool* tool);
    /// Confirms the place to which the pilot beam's spot was steered: while points are taught it becomes a mark point,
    /// while a circle or an arc is taught the next of its three points. Nothing while a job moves the spot, and in no
    /// other operator. With the card closed the last press in the view is taken. The main window calls it for F6 while
    /// points are taught; for circles and arcs the view itself takes F6, pressed anywhere in its window.
    void F6Pressed();

    // Editing
    void Undo();
    void Redo();
    void RedoUndoStatus(bool& redo, bool& undo) const;
    void SetReadOnly(bool readOnly);
    /// Orders the objects by shortest jumps.
    void Sort();
    void Combine();
    void UnCombine();
    void CombineCurve();
    void CombineCurve(bool closed);
    void UnCombineLine();
    bool CanSplit() const;
    bool CanCombineCurve() const;
    bool CanUnCombine() const;
    void AlignLeft();
    void AlignCenterH();
    void AlignRight();
    void AlignTop();
    void AlignCenterV();
    void AlignBottom();
    void SameSelectedSize();
    void SameSelectedWidth();
    void SameSelectedHeight();
    void MirrorSelectObj(MirrorType type);
    void ArraySelectObj();
    void DissimilationSelectObj(DissimilationParam* param);
    /// Asks for a vector file, imports it and tells what came of it.
    void ImportVectorFile();
    /// Adds the drawing of a vector file, centred in the drawing area, as one step of undo. Nothing is asked and
    /// nothing shown: `report` gets the lines that an operator would read, what was added, changed and left out, before
    /// them the reason when nothing was added, which gives false. The log has them too.
    bool ImportVectorFile(QString const& path, QString& report);
    void AddMarkPoint(QPointF const& point);
    /// Adds a text of one or more lines parted by '\n' in the engine's plainest single-line font, on the current pen,
    /// and selects it. `mm` is where the base line of the first line begins; a capital letter is `height` mm high.
    /// False, and the reason in the log, when there is no such text: empty, characters that the font lacks (it has
    /// those of ASCII), a height outside 0.01 to 10 000 mm, a read-only document.
    bool AddText(QPointF const& mm, QString const& text, double height);
    /// Adds rectangles and texts as one step of undo and selects them. All or nothing: false, and the reason in the
    /// log, when one of them cannot be or the document is read-only.
    bool AddDrawing(QVector<DrawnRect> const& rects, QVector<DrawnText> const& texts);
    /// Number of objects and of the vertices that a run of all of them marks.
    void GetDocStatistics(int& objects, int& vertices) const;

    // Selection
    int GetSelectedToolCnt() const;
    /// -1 when nothing is selected.
    int GetFirstSelectedToolIndex() const;
    /// Pen of object `index`, -1 outside.
    int GetToolLayer(int index) const;
    /// Base point, size and angle of the selection. An angle below -180 means that the objects have different angles;
    /// one above 180 that nothing is selected, the other values then being 0. False without a document to ask.
    bool GetSelectObjPos(double& x, double& y, double& width, double& height, double& angle) const;
    /// 0 not marked, 1 marked, -1 mixed or nothing selected.
    int GetSelectObjWorkType() const;
    void SetSelectObjWorkType(int type);
    /// Scales by (scaleX, scaleY) about (x, y).
    void ScaleSelectedObj(double scaleX, double scaleY, double x, double y);
    void MoveSelectObjRelative(double dx, double dy);
    void MoveSelected2Center();
    /// Sets the angle in degrees, counter-clockwise.
    void ChangeSelectedObjAngle(double angle);
    void FillSelectedObj(QVector<FillParam> const& fills, bool edge, bool fillFirst, bool simple);
    BasePoint GetBasePoint() const;
    void SetBasePoint(BasePoint point);
    /// Step of the arrow keys, mm.
    double GetKeyMoveDist() const;
    void SetKeyMoveDist(double dist);

    // Pens
    /// Pens that objects or their hatches are on, groups looked into; ascending.
    QList<int> GetUsedLayers() const;
    int GetCurrentLayer() const;
    /// Makes it the pen of new objects and of the selection.
    void SetCurrentLayer(int layer);
    /// Makes it the pen of new objects only.
    void SetCurrentLayerWithOutChangeLayer(int layer);

    // View
    void Enlarge(bool in);
    void ResetView();
    void ScaleSelectObjRegion();

    /// Takes pending direction keys from `m_DirKeys`, moves the selection by the key step and renews the running
    /// preview. Called every 10 ms on the key thread; locks `m_DirKeyLock`. `redView` is non-zero while a preview runs,
    /// `selected` tells that it traces the selected objects only. A key leaves the list only when the selection is
    /// moved by it, on the main thread, so that at most one waits of those that are queued into an empty list.
    ///
    /// The view makes two calls into the front end, on the main thread and by name through the meta-object, so that the
    /// engine links without it; both are to be invokable there. A direction key pressed in the view while a job runs
    /// goes to MainWindow::HandDirEventOnRedView(QKeyEvent*), which may queue it in `m_DirKeys`; a move of the
    /// selection under a running preview is told by Form_Marking::UpdateRedViewData().
    void OnKeyUpDonwEvent(int redView, bool selected);

    QMutex m_DirKeyLock;                  ///< guards m_DirKeys
    QList<int> m_DirKeys;                 ///< pending direction keys, Qt key codes
    std::atomic<bool> m_bExitClear{true}; ///< cleared just before the program ends: SubWndClosed is then not told

signals:
    /// Base point, size, angle, count and work type of the selection, as GetSelectObjPos and GetSelectObjWorkType give
    /// them.
    void SelectChanged(double x, double y, double width, double height, double angle, int count, int workType);
    void MouseMoveEvent(QPointF mm, QPoint pixel);
    void ChangeOperatorOnView();
    void RedoUnDo(bool redo, bool undo);
    /// The document with this name (GetFileName) is being closed. Emitted by the destructor.
    void SubWndClosed(QString path);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    friend struct QRulerViewAccess;
    struct Private;
    std::unique_ptr<Private> d;
};
