#include "platform/qt/qt_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
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

Line ChoiceLine(const DialogField& field, const Changed& changed) {
    auto* const combo = new QComboBox;
    for (const std::string& choice : field.m_choices) combo->addItem(ToQt(choice));
    QObject::connect(combo, &QComboBox::currentIndexChanged, combo, changed);
    return {combo, [combo] { return std::to_string(std::max(combo->currentIndex(), 0)); },
            [combo](const std::string& v) { combo->setCurrentIndex(ToQt(v).toInt()); }};
}

Line TicksLine(const DialogField& field, const Changed& changed) {
    auto* const list = new QListWidget;
    for (const std::string& choice : field.m_choices) {
        auto* const item = new QListWidgetItem(ToQt(choice), list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        item->setCheckState(Qt::Unchecked);
    }
    list->setMinimumHeight(std::min(260, 24 * std::max(list->count(), 3)));
    list->setMinimumWidth(240);
    QObject::connect(list, &QListWidget::itemChanged, list, changed);
    return {list,
            [list] {
                std::string ticks;
                for (int i = 0; i < list->count(); ++i)
                    ticks += list->item(i)->checkState() == Qt::Checked ? '1' : '0';
                return ticks;
            },
            [list](const std::string& v) {
                for (int i = 0; i < list->count(); ++i) {
                    const bool on =
                        static_cast<std::size_t>(i) < v.size() && v[static_cast<std::size_t>(i)] == '1';
                    list->item(i)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
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

Line NoteLine() {
    auto* const note = new QLabel;
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return {note, nullptr, [note](const std::string& v) { note->setText(ToQt(v)); }};
}

Line MakeLine(const DialogField& field, const Changed& changed) {
    switch (field.m_kind) {
        case Kind::kCheck:
            return CheckLine(field, changed);
        case Kind::kChoice:
            return ChoiceLine(field, changed);
        case Kind::kTicks:
            return TicksLine(field, changed);
        case Kind::kTable:
            return TableLine(field, changed);
        case Kind::kNote:
            return NoteLine();
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
        middle->addLayout(MakeFields(), 1);
        if (form.m_preview) middle->addWidget(MakePreviewPlace(), 0, Qt::AlignTop);
        m_wrong = new QLabel;
        m_wrong->setTextFormat(Qt::PlainText);
        m_wrong->setWordWrap(true);
        QPalette red = m_wrong->palette();
        red.setColor(QPalette::WindowText, palette().color(QPalette::Window).lightness() < 128
                                               ? QColor(255, 110, 100)
                                               : QColor(190, 0, 0));
        m_wrong->setPalette(red);
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
    QFormLayout* MakeFields() {
        auto* const layout = new QFormLayout;
        layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        for (const DialogField& field : m_form.m_fields) {
            Line line = MakeLine(field, [this] { Changed(); });
            line.widget->setObjectName(ToQt(field.m_name));
            const bool wide = field.m_kind == Kind::kTicks || field.m_kind == Kind::kTable;
            if (field.m_kind == Kind::kCheck || (field.m_kind == Kind::kNote && field.m_label.empty())) {
                layout->addRow(line.widget);
            } else if (wide) {
                if (!field.m_label.empty()) layout->addRow(new QLabel(ToQt(field.m_label)));
                layout->addRow(line.widget);
            } else {
                layout->addRow(ToQt(field.m_label), line.widget);
            }
            m_lines.push_back(std::move(line));
        }
        return layout;
    }

    QWidget* MakePreviewPlace() {
        m_place = new QWidget;
        m_place->setFixedSize(m_form.m_previewWidth, m_form.m_previewHeight);
        return m_place;
    }

    QHBoxLayout* MakeButtons() {
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        for (std::size_t i = 0; i < m_form.m_buttons.size(); ++i) {
            auto* const button = new QPushButton(ToQt(m_form.m_buttons[i]));
            button->setAutoDefault(i == 0);
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
            if (!line.read || line.read() != value) line.write(value);
        }
        m_writing = false;
    }

    CQtWindowSystem& m_system;
    DialogForm& m_form;
    PreviewHolder m_holder;
    QWidget* m_place = nullptr;  // for the preview; null without one
    QLabel* m_wrong = nullptr;   // what is wrong with the values
    std::vector<Line> m_lines;   // as the fields
    std::vector<QPushButton*> m_buttons;
    bool m_writing = false;  // changes are our own
    int m_button = -1;
};

}  // namespace

int RunQtDialog(CQtWindowSystem& system, QWidget* above, DialogForm& form) {
    FormDialog dialog(system, above, form);
    return dialog.Run();
}
