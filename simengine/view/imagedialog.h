// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"
#include "simengine/view/imagetracer.h"

#include <QDialog>
#include <QTimer>

class QCheckBox;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

namespace sim {

/// Asks how a picture becomes outlines, and shows them as they change. Main thread.
class ImageDialog : public QDialog {
    Q_OBJECT
public:
    ImageDialog(const QString& path, QWidget* parent);
    ~ImageDialog() override;

    TraceSettings settings() const;
    /// The outlines that are shown belong to the settings, and there are some.
    bool isReady() const { return m_ready; }
    /// What was agreed to, as the objects of an import.
    ImportResult result(const ImportOptions& options) const;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void build();
    QFormLayout* buildFields();
    void addThreshold(QFormLayout* form);
    void addSize(QFormLayout* form);
    void takeImage(const QString& error);
    void takeOutlines(const TracePreview& preview);
    void changed();
    void trace();
    void sizeChanged(bool width);
    void showPreview();

    ImageTracer* m_tracer;
    QTimer m_delay;
    TracedImage m_traced;
    QImage m_preview;
    bool m_ready = false;

    QLabel* m_picture;
    QLabel* m_message;
    QCheckBox* m_automatic;
    QSlider* m_threshold;
    QLabel* m_thresholdValue;
    QCheckBox* m_invert;
    QSpinBox* m_despeckle;
    QDoubleSpinBox* m_smoothness;
    QCheckBox* m_optimise;
    QDoubleSpinBox* m_width;
    QDoubleSpinBox* m_height;
    QCheckBox* m_keepRatio;
    QCheckBox* m_oneObject;
    QPushButton* m_ok;
};

} // namespace sim
