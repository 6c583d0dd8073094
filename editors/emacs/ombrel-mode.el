;;; ombrel-mode.el --- Major mode for Ombrel  -*- lexical-binding: t; -*-

;; Package-Requires: ((emacs "27.1") (eglot "1.9"))

;;; Commentary:

;; Comments, strings and keywords are colored here; the language server ombrel-lsp, connected by eglot, does the rest:
;;
;;     (require 'ombrel-mode)
;;     (add-hook 'ombrel-mode-hook #'eglot-ensure)
;;     (setq ombrel-format-on-save t)

;;; Code:

(require 'eglot)

(defgroup ombrel nil
  "Ombrel source code."
  :group 'languages)

(defcustom ombrel-server-command '("ombrel-lsp")
  "The language server and its arguments."
  :type '(repeat string))

(defcustom ombrel-server-settings nil
  "What the server gets as settings, as a property list.
`:engine' and `:options' apply only where no options file says anything."
  :type 'plist)

(defcustom ombrel-format-on-save nil
  "Whether to format a buffer before it is saved."
  :type 'boolean
  :safe #'booleanp)

(defconst ombrel--keywords
  '("function" "for" "if" "parfor" "switch" "while" "end" "else" "elseif" "try" "catch" "case" "otherwise" "classdef"
    "spmd" "break" "continue" "global" "persistent" "return"))

(defconst ombrel--font-lock-keywords
  `((,(concat "\\(?:^\\|[^.[:alnum:]_]\\)\\(" (regexp-opt ombrel--keywords) "\\)\\_>") 1 font-lock-keyword-face)
    ("^[ \t]*\\(properties\\|methods\\|events\\|enumeration\\|arguments\\)[ \t]*\\(?:(.*)[ \t]*\\)?\\(?:%.*\\)?$"
     1 font-lock-keyword-face)
    ("^[ \t]*\\(import\\)[ \t]+[[:alpha:]]" 1 font-lock-keyword-face)))

(defun ombrel--is-transpose (place)
  "Whether the quote at PLACE, outside of strings, is directly after an operand."
  (let ((before (char-before place)))
    (and before
         (string-match-p "[])}'\".[:alnum:]_]" (string before))
         ;; A quote after the one that closed a string opens it again.
         (not (and (eq before ?\') (equal (syntax-after (1- place)) (string-to-syntax "\""))))
         (not (save-excursion
                (goto-char place)
                (looking-back "\\_<\\(?:if\\|elseif\\|while\\|switch\\|case\\)" (line-beginning-position)))))))

(defun ombrel--propertize-quote ()
  "The syntax of the quote that was just matched."
  (let* ((place (match-beginning 1))
         (state (save-excursion (syntax-ppss place))))
    (cond
     ((eq (nth 3 state) ?\') (string-to-syntax "\""))
     ((nth 8 state) nil)
     ((ombrel--is-transpose place) (string-to-syntax "."))
     (t (string-to-syntax "\"")))))

(defconst ombrel--syntax-propertize
  (syntax-propertize-rules
   ("^[ \t]*\\(%\\){[ \t]*$" (1 "< b"))
   ("^[ \t]*%\\(}\\)[ \t]*$" (1 "> b"))
   ("\\.\\.\\(\\.\\)" (1 (unless (nth 8 (save-excursion (syntax-ppss (match-beginning 0)))) (string-to-syntax "<"))))
   ("\\('\\)" (1 (ombrel--propertize-quote)))))

(defvar ombrel-mode-syntax-table
  (let ((table (make-syntax-table)))
    (modify-syntax-entry ?% "<" table)
    (modify-syntax-entry ?\n ">" table)
    (modify-syntax-entry ?_ "_" table)
    (modify-syntax-entry ?\\ "." table)
    (modify-syntax-entry ?' "." table)
    (modify-syntax-entry ?\" "\"" table)
    (dolist (operator '(?+ ?- ?* ?/ ?^ ?& ?| ?~ ?< ?> ?= ?@ ?: ?! ??))
      (modify-syntax-entry operator "." table))
    table))

(defun ombrel-format-region-or-buffer ()
  "Format the region if it is active, or else the buffer."
  (interactive "*")
  (if (use-region-p)
      (eglot-format (region-beginning) (region-end))
    (eglot-format-buffer)))

(defun ombrel-show-options ()
  "Show the options that apply to this file, and where each comes from."
  (interactive)
  (let ((answer (jsonrpc-request (eglot--current-server-or-lose) :ombrel/options
                                 (list :textDocument (eglot--TextDocumentIdentifier)
                                       :options (list :tabSize tab-width
                                                      :insertSpaces (if indent-tabs-mode :json-false t))))))
    (with-help-window "*Ombrel options*"
      (princ (plist-get answer :text)))))

(defun ombrel-indent-line ()
  "Format this line, or indent it like the one before if there is no server."
  (let ((column-from-end (- (line-end-position) (point))))
    (if (and (eglot-current-server) (not (looking-at-p "^[ \t]*$")))
        (eglot-format (line-beginning-position) (line-end-position))
      (indent-relative t))
    (goto-char (max (save-excursion (back-to-indentation) (point)) (- (line-end-position) column-from-end)))))

(defun ombrel-indent-region (start end)
  "Format the lines from START to END."
  (when (eglot-current-server)
    (eglot-format start end)))

(defun ombrel--format-before-save ()
  "Format the buffer if the user wants it and the server can.
A text that doesn't parse is saved as it is."
  (when (and ombrel-format-on-save (eglot-current-server))
    (with-demoted-errors "ombrel: not formatted: %S"
      (eglot-format-buffer))))

;;;###autoload
(define-derived-mode ombrel-mode prog-mode "Ombrel"
  "Ombrel source code."
  (setq-local comment-start "% ")
  (setq-local comment-start-skip "%+[ \t]*")
  (setq-local comment-end "")
  (setq-local font-lock-defaults '(ombrel--font-lock-keywords))
  (setq-local syntax-propertize-function ombrel--syntax-propertize)
  (setq-local indent-line-function #'ombrel-indent-line)
  (setq-local indent-region-function #'ombrel-indent-region)
  (add-hook 'before-save-hook #'ombrel--format-before-save nil t))

(define-key ombrel-mode-map (kbd "C-c C-f") #'ombrel-format-region-or-buffer)
(define-key ombrel-mode-map (kbd "C-c C-o") #'ombrel-show-options)

(defun ombrel--contact (&optional _interactive)
  "How eglot starts the server."
  (append ombrel-server-command (list :initializationOptions (or ombrel-server-settings eglot--{}))))

(add-to-list 'eglot-server-programs '(ombrel-mode . ombrel--contact))

;;;###autoload
(add-to-list 'auto-mode-alist '("\\.omb\\'" . ombrel-mode))

(provide 'ombrel-mode)
;;; ombrel-mode.el ends here
