// A question with two answers.
Sheet {
    id: prompt

    required property string title
    required property string message
    required property string confirmText
    property bool isDestructive: false

    signal confirmed()
    signal cancelled()

    preferredWidth: 420
    name: title

    form: PromptForm {
        title: prompt.title
        message: prompt.message
        confirmText: prompt.confirmText
        isDestructive: prompt.isDestructive
        messageWidth: prompt.preferredWidth
        onConfirmed: prompt.confirmed()
        onCancelled: prompt.cancelled()
    }
}
