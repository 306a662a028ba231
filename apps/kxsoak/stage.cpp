#include "stage.h"

#include <algorithm>

namespace kxsoak {

namespace {

constexpr QRect kSubjectHome(4, 4, 200, 150);
constexpr std::array kSiblingHomes = {QRect(210, 4, 90, 60), QRect(210, 70, 90, 60)};

}  // namespace

TSoakStage::TSoakStage(const kx::TKxCatalogueEntry& entry, TCreated onCreated)
    : entry_(entry), onCreated_(std::move(onCreated)), window_(std::make_unique<QWidget>()) {
    window_->setWindowTitle("kxsoak " + entry.ClassName);
    window_->resize(310, 160);
    Refill();
    window_->show();
}

TSoakStage::~TSoakStage() = default;  // the window deletes its components

std::vector<QWidget*> TSoakStage::Components() const {
    std::vector<QWidget*> all;
    if (subject_) all.push_back(subject_);
    for (const auto& sibling : siblings_) {
        if (sibling) all.push_back(sibling);
    }
    return all;
}

int TSoakStage::Refill() {
    int made = 0;
    if (!subject_) {
        subject_ = make(kSubjectHome);
        ++made;
    }
    for (size_t i = 0; i < siblings_.size(); ++i) {
        if (!siblings_[i]) {
            siblings_[i] = make(kSiblingHomes[i]);
            ++made;
        }
    }
    return made;
}

QWidget* TSoakStage::make(const QRect& geometry) {
    QWidget* component = entry_.Create(window_.get());
    component->setGeometry(geometry);
    component->show();
    if (onCreated_) onCreated_(component);
    return component;
}

void TSoakStage::Resize(int w, int h) {
    if (!subject_) return;
    window_->resize(std::max(310, w + 8), std::max(160, h + 8));
    subject_->setGeometry(QRect(kSubjectHome.topLeft(), QSize(w, h)));
    subject_->show();
}

void TSoakStage::Normalize() {
    window_->resize(310, 160);
    window_->show();
    for (QWidget* component : Components())
        component->show();
    if (subject_) subject_->setGeometry(kSubjectHome);
}

}  // namespace kxsoak
