#include "platform/qt/qt_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "platform/qt/qt_peer.h"

namespace {

using Kind = DialogField::Kind;

/// One line of the dialog: what it shows, and how its value is read and set.
struct Line {
    QWidget* widget = nullptr;
    std::function<std::string()> read;  // empty function: nothing to answer
    std::function<void(const std::string&)> write;
};

using Changed = std::function<void()>;

constexpr int kLeastName = 160, kMostName = 340;  // pixels of what is ticked
constexpr int kMostNote = 360;                    // of a note, before it is broken
constexpr int kMostRows = 14;                     // of ticks, without scrolling

Line TextLine(const DialogField& field, const Changed& changed) {
    auto* const edit = new QLineEdit;
    if (field.m_kind == Kind::kText) edit->setMinimumWidth(200);
    QObject::connect(edit, &QLineEdit::textChanged, edit, changed);
    return {edit, [edit] { return FromQt(edit->text()); },
            [edit](const std::string& v) { edit->setText(ToQt(v)); }};
}

Line CheckLine(const DialogField& field, const Changed& changed) {
    auto* const box = new QCheckBox(ToQt(field.m_label));
    QObject::connect(box, &QCheckBox::toggled, box, changed);
    return {box, [box] { return std::string(box->isChecked() ? "1" : "0"); },
            [box](const std::string& v) { box->setChecked(v == "1"); }};
}

Line SliderLine(const DialogField& field, const Changed& changed) {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const slider = new QSlider(Qt::Horizontal);
    slider->setRange(field.m_least, field.m_most);
    slider->setPageStep(std::max((field.m_most - field.m_least) / 10, 1));
    auto* const number = new QLabel;
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    number->setMinimumWidth(number->fontMetrics().horizontalAdvance(QString::number(field.m_most)));
    layout->addWidget(slider, 1);
    layout->addWidget(number);
    row->setFocusProxy(slider);
    const auto tell = [slider, number] { number->setText(QString::number(slider->value())); };
    tell();
    QObject::connect(slider, &QSlider::valueChanged, slider, [tell, changed] {
        tell();
        changed();
    });
    return {row, [slider] { return std::to_string(slider->value()); },
            [slider](const std::string& v) { slider->setValue(ToQt(v).toInt()); }};
}

Line ChoiceLine(const DialogField& field, const Changed& changed) {
    auto* const combo = new QComboBox;
    for (const std::string& choice : field.m_choices) combo->addItem(ToQt(choice));
    QObject::connect(combo, &QComboBox::currentIndexChanged, combo, changed);
    return {combo, [combo] { return std::to_string(std::max(combo->currentIndex(), 0)); },
            [combo](const std::string& v) { combo->setCurrentIndex(ToQt(v).toInt()); }};
}

// Names are elided in the middle, since they often differ at their ends; the tip tells the whole.
Line TicksLine(const DialogField& field, const Changed& changed) {
    auto* const list = new QTreeWidget;
    QStringList heads;
    for (const std::string& head : field.m_heads) heads << ToQt(head);
    list->setColumnCount(std::max(static_cast<int>(heads.size()), 1));
    list->setHeaderLabels(heads.isEmpty() ? QStringList(QString()) : heads);
    list->setHeaderHidden(heads.isEmpty());
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setTextElideMode(Qt::ElideMiddle);
    for (const std::string& choice : field.m_choices) {
        auto* const item = new QTreeWidgetItem(list, ToQt(choice).split(u'\t'));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        item->setCheckState(0, Qt::Unchecked);
        item->setToolTip(0, item->text(0));
        for (int column = 1; column < list->columnCount(); ++column)
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    QHeaderView& header = *list->header();
    header.setStretchLastSection(false);
    for (int column = 1; column < list->columnCount(); ++column)
        list->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    int width = 0;
    for (int column = 0; column < list->columnCount(); ++column) {
        list->resizeColumnToContents(column);
        if (column == 0) list->setColumnWidth(0, std::clamp(list->columnWidth(0), kLeastName, kMostName));
        width += list->columnWidth(column);
    }
    header.setSectionResizeMode(0, QHeaderView::Stretch);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int rows = std::clamp(list->topLevelItemCount(), 3, kMostRows);
    const bool scrolls = list->topLevelItemCount() > rows;
    const int height = (heads.isEmpty() ? 0 : header.sizeHint().height()) + 2 * list->frameWidth() +
                       rows * std::max(static_cast<const QAbstractItemView*>(list)->sizeHintForRow(0), 18);
    list->setMinimumSize(width + 2 * list->frameWidth() + (scrolls ? 20 : 2), height);
    if (!scrolls) list->setMaximumHeight(height);
    QObject::connect(list, &QTreeWidget::itemChanged, list, changed);
    return {list,
            [list] {
                std::string ticks;
                for (int i = 0; i < list->topLevelItemCount(); ++i)
                    ticks += list->topLevelItem(i)->checkState(0) == Qt::Checked ? '1' : '0';
                return ticks;
            },
            [list](const std::string& v) {
                for (int i = 0; i < list->topLevelItemCount(); ++i) {
                    const bool on =
                        static_cast<std::size_t>(i) < v.size() && v[static_cast<std::size_t>(i)] == '1';
                    list->topLevelItem(i)->setCheckState(0, on ? Qt::Checked : Qt::Unchecked);
                }
            }};
}

std::string ReadTable(const QTableWidget& table) {
    std::string text;
    for (int row = 0; row < table.rowCount(); ++row) {
        std::string cells;
        bool any = false;
        for (int column = 0; column < table.columnCount(); ++column) {
            const QTableWidgetItem* const item = table.item(row, column);
            QString cell = item ? item->text().trimmed() : QString();
            cell.replace(u'\t', u' ').replace(u'\n', u' ');
            any = any || !cell.isEmpty();
            if (column) cells += '\t';
            cells += FromQt(cell);
        }
        if (any) text.append(cells).append(1, '\n');
    }
    return text;
}

void WriteTable(QTableWidget& table, const std::string& text) {
    const QStringList rows = ToQt(text).split(u'\n', Qt::SkipEmptyParts);
    table.setRowCount(static_cast<int>(rows.size()) + 1);
    for (int row = 0; row < table.rowCount(); ++row) {
        const QStringList cells = row < rows.size() ? rows[row].split(u'\t') : QStringList();
        for (int column = 0; column < table.columnCount(); ++column)
            table.setItem(row, column,
                          new QTableWidgetItem(column < cells.size() ? cells[column] : QString()));
    }
}

// Below the last row stands an empty one to go on in; a row that is emptied is none.
Line TableLine(const DialogField& field, const Changed& changed) {
    auto* const table = new QTableWidget(1, static_cast<int>(field.m_choices.size()));
    QStringList heads;
    for (const std::string& head : field.m_choices) heads << ToQt(head);
    table->setHorizontalHeaderLabels(heads);
    table->verticalHeader()->setDefaultSectionSize(24);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->setMinimumSize(std::max(240, 80 * table->columnCount()), 180);
    QObject::connect(table, &QTableWidget::itemChanged, table, [table, changed](QTableWidgetItem* item) {
        if (item->row() + 1 == table->rowCount() && !item->text().isEmpty())
            table->setRowCount(table->rowCount() + 1);
        changed();
    });
    return {table, [table] { return ReadTable(*table); },
            [table](const std::string& v) { WriteTable(*table, v); }};
}

// A label that may break its text would be as narrow as it likes.
void WriteNote(QLabel& note, const std::string& text) {
    note.setText(ToQt(text));
    const int width = note.fontMetrics().boundingRect(QRect(0, 0, 4000, 4000), 0, note.text()).width();
    note.setMinimumWidth(std::min(width + 4, kMostNote));
}

/// A text in red, be the desktop light or dark.
QLabel* RedLabel() {
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QPalette red = label->palette();
    const bool dark = red.color(QPalette::Window).lightness() < 128;
    red.setColor(QPalette::WindowText, dark ? QColor(255, 110, 100) : QColor(190, 0, 0));
    label->setPalette(red);
    return label;
}

Line NoteLine() {
    auto* const note = new QLabel;
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return {note, nullptr, [note](const std::string& v) { WriteNote(*note, v); }};
}

Line WarningLine() {
    auto* const note = RedLabel();
    return {note, nullptr, [note](const std::string& v) {
                WriteNote(*note, v);
                note->setVisible(!v.empty());
            }};
}

Line MakeLine(const DialogField& field, const Changed& changed) {
    switch (field.m_kind) {
        case Kind::kCheck:
            return CheckLine(field, changed);
        case Kind::kSlider:
            return SliderLine(field, changed);
        case Kind::kChoice:
            return ChoiceLine(field, changed);
        case Kind::kTicks:
            return TicksLine(field, changed);
        case Kind::kTable:
            return TableLine(field, changed);
        case Kind::kNote:
            return NoteLine();
        case Kind::kWarning:
            return WarningLine();
        default:
            return TextLine(field, changed);
    }
}

/// The window that the preview lies in.
class PreviewHolder : public CWnd {
public:
    ~PreviewHolder() override { DestroyWindow(); }
};

class FormDialog : public QDialog {
public:
    FormDialog(CQtWindowSystem& system, QWidget* above, DialogForm& form)
        : QDialog(above), m_system(system), m_form(form) {
        setWindowTitle(ToQt(form.m_title));
        auto* const all = new QVBoxLayout(this);
        auto* const middle = new QHBoxLayout;
        all->addLayout(middle, 1);
        if (form.m_preview) MakePreviewPlace();
        middle->addLayout(MakeFields(), 1);
        if (m_place && !m_placed) middle->addWidget(m_place, 0, Qt::AlignTop);
        m_wrong = RedLabel();
        all->addWidget(m_wrong);
        all->addLayout(MakeButtons());
        WriteAll();
        CreatePreview();
        Check();
    }

    ~FormDialog() override {
        if (m_form.m_preview) m_form.m_preview->DestroyWindow();
    }

    int Run() {
        exec();
        return m_button;
    }

private:
    static QFormLayout* NewForm() {
        auto* const layout = new QFormLayout;
        layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        return layout;
    }

    QVBoxLayout* MakeFields() {
        auto* const all = new QVBoxLayout;
        QFormLayout* form = NewForm();
        all->addLayout(form);
        m_pair = nullptr;
        for (const DialogField& field : m_form.m_fields) {
            if (field.m_kind == Kind::kFrame) {
                form = NewForm();
                if (field.m_label.empty()) {
                    all->addLayout(form);
                } else {
                    auto* const frame = new QGroupBox(ToQt(field.m_label));
                    frame->setLayout(form);
                    all->addWidget(frame);
                }
                m_framed = !field.m_label.empty();
                m_pair = nullptr;
            } else if (field.m_kind == Kind::kPreview) {
                if (m_place) form->addRow(m_place);
                m_placed = m_place != nullptr;
            } else {
                Line line = MakeLine(field, [this] { Changed(); });
                line.widget->setObjectName(ToQt(field.m_name));
                AddRow(*form, field, line.widget);
                m_lines.push_back(std::move(line));
                continue;
            }
            m_lines.emplace_back();
        }
        all->addStretch(1);
        return all;
    }

    void AddRow(QFormLayout& form, const DialogField& field, QWidget* widget) {
        const bool check = field.m_kind == Kind::kCheck;
        const bool wide = field.m_kind == Kind::kTicks || field.m_kind == Kind::kTable;
        if (check && m_pair) {  // boxes in a frame stand two by two
            m_pair->addWidget(widget, 1);
            m_pair = nullptr;
        } else if (check && m_framed) {
            m_pair = new QHBoxLayout;
            m_pair->addWidget(widget, 1);
            form.addRow(m_pair);
        } else if (check || field.m_kind == Kind::kWarning ||
                   (field.m_kind == Kind::kNote && field.m_label.empty())) {
            form.addRow(widget);
        } else if (wide) {
            if (!field.m_label.empty()) form.addRow(new QLabel(ToQt(field.m_label)));
            form.addRow(widget);
        } else {
            form.addRow(ToQt(field.m_label), widget);
        }
        if (!check) m_pair = nullptr;
    }

    void MakePreviewPlace() {
        m_place = new QWidget(this);
        m_place->setFixedSize(m_form.m_previewWidth, m_form.m_previewHeight);
    }

    QHBoxLayout* MakeButtons() {
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        for (std::size_t i = 0; i < m_form.m_buttons.size(); ++i) {
            auto* const button = new QPushButton(ToQt(m_form.m_buttons[i]));
            button->setAutoDefault(true);  // Enter presses the one that has the keys, the first from a field
            button->setDefault(i == 0);
            QObject::connect(button, &QPushButton::clicked, this, [this, i] {
                m_button = static_cast<int>(i);
                accept();
            });
            row->addWidget(button);
            m_buttons.push_back(button);
        }
        return row;
    }

    void CreatePreview() {
        if (!m_place) return;
        const CRect place(0, 0, m_form.m_previewWidth, m_form.m_previewHeight);
        m_system.EmbedIn(m_place);
        m_holder.Create(nullptr, place, WindowKind::kPane);
        m_system.EmbedIn(nullptr);
        m_form.m_preview->Create(&m_holder, place, WindowKind::kView);
        m_form.m_preview->OnInitialUpdate();
    }

    void Changed() {
        if (m_writing) return;
        for (std::size_t i = 0; i < m_lines.size(); ++i)
            if (m_lines[i].read) m_form.m_fields[i].m_value = m_lines[i].read();
        Check();
    }

    // The check may have set other values.
    void Check() {
        const std::string wrong = m_form.m_check ? m_form.m_check(m_form) : std::string();
        WriteAll();
        m_wrong->setText(ToQt(wrong));
        for (std::size_t i = 0; i + 1 < m_buttons.size(); ++i) m_buttons[i]->setEnabled(wrong.empty());
    }

    void WriteAll() {
        m_writing = true;
        for (std::size_t i = 0; i < m_lines.size() && i < m_form.m_fields.size(); ++i) {
            const Line& line = m_lines[i];
            const std::string& value = m_form.m_fields[i].m_value;
            if (line.write && (!line.read || line.read() != value)) line.write(value);
        }
        m_writing = false;
    }

    CQtWindowSystem& m_system;
    DialogForm& m_form;
    PreviewHolder m_holder;
    QWidget* m_place = nullptr;     // for the preview; null without one
    bool m_placed = false;          // it stands among the fields
    bool m_framed = false;          // a frame is being filled
    QHBoxLayout* m_pair = nullptr;  // a row of it with room for another box
    QLabel* m_wrong = nullptr;      // what is wrong with the values
    std::vector<Line> m_lines;      // as the fields
    std::vector<QPushButton*> m_buttons;
    bool m_writing = false;  // changes are our own
    int m_button = -1;
};

}  // namespace

int RunQtDialog(CQtWindowSystem& system, QWidget* above, DialogForm& form) {
    FormDialog dialog(system, above, form);
    return dialog.Run();
}
