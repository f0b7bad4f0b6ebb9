// SPDX-License-Identifier: MIT
// PositionModel: the rows of a long list as mere positions. Whoever shows a row knows what is
// there, so rows stay when the list has other contents. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

class PositionModel : public Gio::ListModel, public Glib::Object { // the interface comes first
public:
    /// How many rows are added or removed at a time. The list makes widgets for the first 200,
    /// which takes longer than a frame may.
    static constexpr guint kStep = 10;

    /// Adds or removes some rows, or all at once that the list has no widgets for.
    /// @return  whether there are still others
    bool step();

protected:
    /// The number of rows on the screen follows with each step(), the first of which is made here.
    /// Nothing is reported about rows that have other contents now: whoever shows them looks at
    /// them again.
    void setCount(guint count);

    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    void resize(guint count);

    guint count_ = 0; // that there shall be
    guint shown_ = 0;
};

} // namespace host
