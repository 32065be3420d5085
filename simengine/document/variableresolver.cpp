// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variableresolver.h"

#include "simengine/document/codemessage.h"
#include "simengine/document/textmessage.h"

#include <algorithm>

namespace sim {

namespace {

/// The template of an object; null of one without variables.
const QString* patternOf(const MarkObject& object) {
    if (const auto* text = std::get_if<TextShape>(&object.shape()))
        return text->spec.variables ? &text->spec.text : nullptr;
    if (const auto* code = std::get_if<CodeShape>(&object.shape()))
        return code->spec.variables ? &code->spec.text : nullptr;
    return nullptr;
}

template<class Wanted>
bool anyPattern(const ObjectList& objects, Wanted wanted) {
    return std::any_of(objects.begin(), objects.end(), [&](const ObjectPtr& object) {
        if (const auto* group = std::get_if<GroupShape>(&object->shape()))
            return anyPattern(group->children, wanted);
        const QString* pattern = patternOf(*object);
        return pattern && wanted(*pattern);
    });
}

class Resolver {
public:
    Resolver(Resolve which, VariableValues& values, ResolvedObjects& result)
        : m_run(which != Resolve::All)
        , m_values(values)
        , m_result(result) {}

    /// The object with its present values; itself when it shows them already or a problem keeps them away.
    ObjectPtr resolved(const ObjectPtr& object) {
        if ((m_run && (!object->works() || !m_result.problem.ok())))
            return object;
        if (const auto* group = std::get_if<GroupShape>(&object->shape()))
            return resolvedGroup(object, *group);
        const QString* pattern = patternOf(*object);
        if (!pattern)
            return object;
        VariableProblem problem;
        const QString text = m_values.text(*pattern, problem);
        ObjectPtr shown = problem.ok() ? showing(object, *pattern, text, problem) : nullptr;
        if (m_result.problem.ok())
            m_result.problem = problem;
        return shown ? shown : object;
    }

private:
    ObjectPtr resolvedGroup(const ObjectPtr& object, const GroupShape& group) {
        GroupShape changed;
        bool any = false;
        for (const ObjectPtr& child : group.children) {
            changed.children.push_back(resolved(child));
            any = any || changed.children.back() != child;
        }
        return any ? reshapedGroup(*object, std::move(changed)) : object;
    }

    ObjectPtr showing(const ObjectPtr& object, const QString& pattern, const QString& text, VariableProblem& problem) {
        if (const auto* code = std::get_if<CodeShape>(&object->shape())) {
            if (m_values.isUnique(pattern))
                m_result.uniqueCodes.append(text);
            if (code->shown == text)
                return object;
            MadeCode made = makeCode(code->spec, text);
            if (made.ok())
                return reshaped(*object, std::move(made.shape), problem);
            problem = {VariableFault::NotCode, QStringLiteral("%1: %2").arg(text, codeMessage(made))};
            return nullptr;
        }
        const auto& shape = std::get<TextShape>(object->shape());
        if (shape.shown == text)
            return object;
        MadeText made = makeText(shape.spec, text);
        if (made.ok())
            return reshaped(*object, std::move(made.shape), problem);
        problem = {VariableFault::NotText, QStringLiteral("%1: %2").arg(text, textMessage(made))};
        return nullptr;
    }

    ObjectPtr reshapedGroup(const MarkObject& object, GroupShape shape) {
        VariableProblem problem;
        ObjectPtr changed = reshaped(object, std::move(shape), problem);
        if (m_result.problem.ok())
            m_result.problem = problem;
        return changed;
    }

    /// Values of another length can take an object beyond the field, or its hatch beyond the segments that it may have.
    static ObjectPtr reshaped(const MarkObject& object, Shape shape, VariableProblem& problem) {
        ObjectData data = object.data();
        data.shape = std::move(shape);
        QString fault;
        ObjectPtr changed = MarkObject::make(std::move(data), &fault);
        if (!changed)
            problem = {VariableFault::NotText, fault};
        return changed;
    }

    bool m_run;
    VariableValues& m_values;
    ResolvedObjects& m_result;
};

} // namespace

bool holdsVariables(const ObjectList& objects) {
    return anyPattern(objects, [](const QString&) { return true; });
}

bool followsClock(const ObjectList& objects) {
    return anyPattern(objects, [](const QString& pattern) { return VariableValues::followsClock(pattern); });
}

ResolvedObjects resolveVariables(const DocumentState& state, Resolve which, VariableValues& values) {
    ResolvedObjects result;
    result.objects = state.objects;
    if (!holdsVariables(*state.objects))
        return result;
    Resolver resolver(which, values, result);
    ObjectList objects;
    objects.reserve(state.objects->size());
    bool any = false;
    for (int i = 0; i < state.count(); ++i) {
        const bool looked = which != Resolve::Selected || state.selection.contains(i);
        ObjectPtr object = looked ? resolver.resolved(state.at(i)) : state.at(i);
        any = any || object != state.at(i);
        objects.push_back(object ? std::move(object) : state.at(i));
    }
    if (any)
        result.objects = std::make_shared<const ObjectList>(std::move(objects));
    return result;
}

} // namespace sim
