// SPDX-License-Identifier: MIT
#include "figures.h"

#include "documentfiles.h"
#include "engine/imarkcardbase.h"
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "machinecontrol.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"
#include "support/durablesettings.h"

namespace tessera {

RunFigures documentFigures(MachineControl const& machine) {
    RunFigures figures;
    if (QRulerView* document = MainWindow::Instance()->GetActiveView()) {
        QString const path = DocumentFiles::existing(document->GetFileName());
        figures.document = path.isEmpty() ? document->GetFileName() : path;
        figures.objects = document->GetMarkTools()->GetMarkTools().size();
    }
    if (IMarkCardBase* card = MarkCardInstance::Instance())
        figures.estimatedTime = card->GetBufferRunTime();
    figures.actualTime = double(RunDataGather::Instance()->GetRunTime());
    if (machine.isSimulated()) {
        sim::SimJobTime const job = machine.sim()->lastJobTime();
        figures.vertices = qint64(job.vertices);
        figures.markedLength = job.markedMm;
        figures.jumpedLength = job.jumpedMm;
    }
    figures.counter = readSetting(rootPath(QStringLiteral("/ini/Marking.ini")), QStringLiteral("MarkCnt"), 0).toInt();
    return figures;
}

} // namespace tessera
