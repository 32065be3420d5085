// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iofunclist.h"

#include <QDialog>
#include <QPixmap>
#include <QVector>
#include <memory>
#include <optional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class Ui_IOSetting;

/// Ties the machine's functions to the card's inputs and outputs, names the lines, sets the signals that the engine
/// gives, and watches and tests the lines. Functions are edited on a copy until they are saved. Main thread.
class IOSetting : public QDialog {
    Q_OBJECT
public:
    /// Makes the dialog at the first call, as a window of `parent`, which then ends it.
    static IOSetting* Instance(QWidget* parent = nullptr);
    ~IOSetting() override;

    /// Shows what is in force now; changes that were not saved are gone.
    void ShowWindow();
    void InitUI();
    void InitOutput();
    void SetUIText();
    /// Gives the lines the names of the card's type and makes the edits read-only. The names file stays as it is.
    void ChangeIOTextShow();
    void SetOutSignalUI();
    void SetInputStatus(unsigned int word);
    void SetOutputStatus(unsigned int word);
    void SetBitValue(unsigned int& word, unsigned int bit, unsigned int value);

signals:
    /// The outputs were saved.
    void UpdateValues();

public slots:
    void on_comboBoxSignalName_currentIndexChanged(int index);
    void on_checkBoxIOFunc_stateChanged(int state);
    void on_checkBoxEnableInput_stateChanged(int state);
    void on_checkBoxEnableOutput_stateChanged(int state);
    void on_checkBoxDelay_stateChanged(int state);
    void on_spinBoxDelayTime_valueChanged(int value);
    void on_pushButtonSave_clicked();
    void on_pushButtonSaveOut_clicked();
    void on_checkBoxSetIOName_stateChanged(int state);
    void on_checkBox_stateChanged(int state);
    void on_textChanged(QString const& text);
    void on_pushButtonSaveIOName_clicked();
    void on_SetOutputClick();
    void on_pushButtonRedCtrl_clicked();
    void on_pushButton_clicked();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    /// What one side, inputs or outputs, has of widgets and names; a place a line.
    struct Side {
        QVector<QString> names;
        QVector<QPushButton*> status;
        std::optional<unsigned int> shown; ///< word that the pictures tell, none before the first
        QVector<QLineEdit*> nameEdits;
        QVector<QLabel*> lineLabels;
        QVector<QCheckBox*> valid;
        QVector<QCheckBox*> invert;
    };

    explicit IOSetting(QWidget* parent);
    void MakeFunctionRows(QWidget* holder, Side& side, QString const& prefix);
    void MakeStatusRows(QWidget* holder, Side& side, QString const& prefix);
    void ConnectAll();
    void ConnectFunctionPage();
    void ReadNames();
    void ShowNames(Side& side);
    void LoadFunctions();
    void SetOutputTexts();
    void SetStatusTexts();
    void StoreEndSignal();
    void StoreSwitches();
    void StopTimer();
    IOFuncList* CurrentFunction();
    bool StoreBit(Side const& side, QObject* box, unsigned int& mask, unsigned int& value);
    bool StoreName(Side& side, QObject* edit, QString const& section, QString const& prefix, QString const& text);
    void ShowBits(Side& side, unsigned int word);

    static IOSetting* m_pIOSettingInstance;
    static int m_WaveNo; ///< waveform that the test button gives next, 0 to 15

    std::unique_ptr<Ui_IOSetting> ui;
    QVector<IOFuncList> m_Functions; ///< the copy that is edited
    Side m_Inputs;
    Side m_Outputs;
    QString m_NamesPath;
    QPixmap m_ClearPixmap;
    QPixmap m_SetPixmap;
    int m_TimerId = -1;
    bool m_Ready = true; ///< false while the page is filled: nothing is written back
    bool m_RedOn = false;
};
