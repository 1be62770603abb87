#include "shell/AcknowledgementDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

// One paragraph to be copied into a publication; null for a language that there is none for.
QString remark(const QString &language)
{
    static const QString link = "<a href=\"https://tevora.example.org\">Tevora</a>";
    if (language == "en")
        return "<!-- <h2>Acknowledgement</h2> --><p>Segmentation and morphometry of the knee cartilage in "
               "this study were carried out with the software " +
               link +
               " (The Tevora developers: Tevora, a workstation for the segmentation of knee cartilage).</p>";
    if (language == "de")
        return "<!-- <h2>Danksagung</h2> --><p>Segmentierung und Morphometrie des Kniegelenkknorpels wurden "
               "in dieser Studie mit der Software " +
               link +
               " durchgeführt (The Tevora developers: Tevora, a workstation for the segmentation of knee "
               "cartilage).</p>";
    if (language == "fr")
        return "<!-- <h2>Remerciement</h2> --><p>La segmentation et la morphométrie du cartilage du genou "
               "ont été réalisées dans cette étude avec le logiciel " +
               link +
               " (The Tevora developers: Tevora, a workstation for the segmentation of knee cartilage).</p>";
    return {};
}

} // namespace

AcknowledgementDialog::AcknowledgementDialog(QWidget *parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowSystemMenuHint)
    , browser(new QTextBrowser(this))
    , languages(new QComboBox(this))
{
    setWindowTitle(tr("Acknowledging Usage of Tevora"));
    browser->setReadOnly(true);
    browser->setOpenExternalLinks(true);
    //: Stands between the two texts on a publication below.
    languages->addItem(tr("English", "ACK_LANG"), "en");
    //: Stands between the two texts on a publication below.
    languages->addItem(tr("German", "ACK_LANG"), "de");
    //: Stands between the two texts on a publication below.
    languages->addItem(tr("French", "ACK_LANG"), "fr");
    showMessage(0);
    languages->model()->sort(0, Qt::AscendingOrder);
    connect(languages, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &AcknowledgementDialog::showMessage);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, Qt::Horizontal, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Acknowledge having used Tevora for your study in a"), this));
    layout->addWidget(languages);
    layout->addWidget(new QLabel(tr("publication by including a remark analogous to the following."), this));
    layout->addWidget(browser);
    layout->addWidget(buttons);
}

void AcknowledgementDialog::showMessage(int index)
{
    const QString text = remark(languages->itemData(index).toString());
    auto *document = new QTextDocument(browser);
    document->setHtml(!text.isNull() ? text : "<p><i>" + tr("language unavailable") + "</i></p>");
    browser->setDocument(document);
}
